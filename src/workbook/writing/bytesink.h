#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace workbook
{

/**
 * Writes a file atomically. The bytes are written to a temporary file with mode 0600 in the
 * target's directory; commit() renames this file to the target. Until then, an existing target is
 * unchanged. If commit() is not called or fails, the destructor removes the temporary file.
 *
 * The first error is latched: later calls write nothing, and commit() returns false and sets
 * `errno` to this error, or to 0 if this error was a call of fail(). The destructor preserves
 * `errno`.
 */
class ByteSink
{
public:
    /** `target` is a path in the encoding of the file system. */
    explicit ByteSink(std::string target);
    ~ByteSink();
    ByteSink(const ByteSink &) = delete;
    ByteSink &operator=(const ByteSink &) = delete;

    void append(std::string_view bytes);

    /** Overwrites appended bytes, from `offset` on. */
    void patch(std::uint64_t offset, std::string_view bytes);

    /** Returns the number of bytes appended so far. */
    [[nodiscard]] std::uint64_t size() const { return flushed + buffer.size(); }

    [[nodiscard]] bool ok() const { return !failed; }

    /** Latches an error: the caller's content exceeds the limits of the file format. */
    void fail() { failed = true; }

    bool commit();

private:
    void openTemporary();
    void flush();
    void writeAt(std::uint64_t offset, std::string_view bytes);
    bool close();
    void failWithErrno();

    const std::string target;
    std::string temporary; // path; empty if there is no temporary file
    std::string buffer;
    std::uint64_t flushed = 0;
    int file = -1;
    bool failed = false;
    int firstErrno = 0;
};

} // namespace workbook
