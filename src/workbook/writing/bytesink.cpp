#include "workbook/writing/bytesink.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace workbook
{

namespace
{

constexpr std::size_t bufferBytes = 0x40000;

} // namespace

ByteSink::ByteSink(std::string targetPath)
    : target(std::move(targetPath))
{
    buffer.reserve(bufferBytes);
    openTemporary();
}

ByteSink::~ByteSink()
{
    const int before = errno;
    close();
    if (!temporary.empty())
        ::unlink(temporary.c_str());
    errno = before;
}

void ByteSink::openTemporary()
{
    // The temporary name does not contain the target's name, which may already have the maximum
    // length. The name is random, because other users of a shared directory could create a file
    // with a predictable name first. The string is built before the file is created, so that
    // running out of memory cannot leave a file behind.
    constexpr std::string_view ending = ".tmp";
    temporary = target.substr(0, target.rfind('/') + 1) + ".workbook-XXXXXX";
    temporary += ending;
    file = ::mkostemps(temporary.data(), static_cast<int>(ending.size()), O_CLOEXEC);
    if (file >= 0)
        return;
    failWithErrno();
    temporary.clear();
}

void ByteSink::append(std::string_view bytes)
{
    if (failed)
        return;
    if (buffer.size() + bytes.size() > bufferBytes)
        flush();
    if (bytes.size() < bufferBytes) {
        buffer += bytes;
        return;
    }
    writeAt(flushed, bytes);
    flushed += bytes.size();
}

void ByteSink::patch(std::uint64_t offset, std::string_view bytes)
{
    flush();
    writeAt(offset, bytes);
}

void ByteSink::flush()
{
    writeAt(flushed, buffer);
    flushed += buffer.size();
    buffer.clear();
}

void ByteSink::writeAt(std::uint64_t offset, std::string_view bytes)
{
    while (!failed && !bytes.empty()) {
        const ssize_t written =
            ::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
            offset += static_cast<std::uint64_t>(written);
        } else if (written == 0 || errno != EINTR) {
            failWithErrno();
        }
    }
}

bool ByteSink::close()
{
    if (file < 0)
        return true;
    const bool closed = ::close(file) == 0;
    file = -1;
    return closed;
}

bool ByteSink::commit()
{
    flush();
    // A network file system may report a full disk only when the file is closed.
    if (!failed && (!close() || std::rename(temporary.c_str(), target.c_str()) != 0))
        failWithErrno();
    if (failed) {
        errno = firstErrno;
        return false;
    }
    temporary.clear();
    return true;
}

void ByteSink::failWithErrno()
{
    if (!failed)
        firstErrno = errno;
    failed = true;
}

} // namespace workbook
