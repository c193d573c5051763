#pragma once

#include "workbook/xlsx/deflater.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace workbook
{

class Buffer;
class ByteSink;

/**
 * Writes a ZIP archive of deflated entries to a sink. Each entry is compressed while it is written;
 * sizes and checksum are filled into its local header afterwards. All entries have the same fixed
 * time, so that equal content makes equal bytes.
 *
 * For each entry, call begin(), append() any number of times, and end(). After the last entry, call
 * finish(). Errors are latched in the sink. It is an error if the archive would need the 64-bit
 * extension (4 GiB or 65,535 entries).
 */
class ZipWriter
{
public:
    explicit ZipWriter(ByteSink &byteSink);
    ZipWriter(const ZipWriter &) = delete;
    ZipWriter &operator=(const ZipWriter &) = delete;

    /** `name` is ASCII, with "/" between folders, and unique in the archive. */
    void begin(std::string_view name);

    /** `phrases` are as for Deflater::append(). */
    void append(std::string_view bytes, const std::vector<Phrase> &phrases = {});

    void end();

    /** Adds a whole entry. */
    void add(std::string_view name, std::string_view bytes);

    void finish();

private:
    struct Entry {
        std::string name;
        std::uint64_t offset = 0;
        std::uint64_t packedBytes = 0;
        std::uint64_t plainBytes = 0;
        std::uint32_t checksum = 0;
    };

    static void appendCommonHeader(Buffer &out, const Entry &entry);
    void appendPacked();
    void checkRange(std::uint64_t value);

    ByteSink &sink;
    Deflater deflater;
    std::vector<Entry> entries;
};

} // namespace workbook
