#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace workbook
{

/**
 * The file being written: a temporary one beside the target, mode 0600, that commit() renames over
 * the target. Until then, and on any failure, an older target is untouched; a sink that ends
 * without a successful commit removes its temporary file.
 *
 * The first error is latched: later calls do nothing and commit() returns false. Then `errno` is
 * the system's first error, 0 if the file format was at fault, and the destructor keeps it.
 */
class ByteSink
{
public:
    /** `target` is a path as the system takes it: bytes. */
    explicit ByteSink(std::string target);
    ~ByteSink();
    ByteSink(const ByteSink &) = delete;
    ByteSink &operator=(const ByteSink &) = delete;

    void append(std::string_view bytes);

    /** Overwrites bytes that were appended before. */
    void patch(std::uint64_t offset, std::string_view bytes);

    /** Number of bytes appended so far. */
    [[nodiscard]] std::uint64_t size() const { return flushed + buffer.size(); }

    [[nodiscard]] bool ok() const { return !failed; }

    /** For layers above: what was asked for does not fit the file format. */
    void fail() { failed = true; }

    bool commit();

private:
    void openTemporary();
    void flush();
    void writeAt(std::uint64_t offset, std::string_view bytes);
    bool close();
    void failWithErrno();

    const std::string target;
    std::string temporary; // empty while there is no file to remove
    std::string buffer;
    std::uint64_t flushed = 0;
    int file = -1;
    bool failed = false;
    int firstErrno = 0;
};

} // namespace workbook
