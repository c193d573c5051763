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
 * Writes a ZIP archive of deflated entries to a sink. Compresses each entry while it is written,
 * then stores the sizes and the checksum in the entry's local header. All entries have the same
 * fixed time, so that equal content makes equal bytes.
 *
 * For each entry, call begin(), append() any number of times, and end(). After the last entry, call
 * finish(). Errors are latched in the sink. An archive that needs the 64-bit extension (4 GiB or
 * 65,535 entries) is an error.
 */
class ZipWriter
{
public:
    explicit ZipWriter(ByteSink &byteSink);
    ZipWriter(const ZipWriter &) = delete;
    ZipWriter &operator=(const ZipWriter &) = delete;

    /** `name` must be ASCII, with "/" as the separator, and unique in the archive. */
    void begin(std::string_view name);

    /** See Deflater::append() for `phrases`. */
    void append(std::string_view bytes, const std::vector<Phrase> &phrases = {});

    void end();

    /** Adds a complete entry. */
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
