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
 * A ZIP archive of deflated entries, streamed into a sink: an entry is compressed while it is
 * written, and its local header gets sizes and checksum afterwards. All entries carry the same
 * fixed time, so that equal content makes equal bytes.
 *
 * begin, append..., end per entry, then finish. Errors are latched in the sink, also for an
 * archive that would need the 64-bit extension (4 GiB).
 */
class ZipWriter
{
public:
    explicit ZipWriter(ByteSink &sink);
    ZipWriter(const ZipWriter &) = delete;
    ZipWriter &operator=(const ZipWriter &) = delete;

    /** `name` is ASCII with "/" between folders and unique in the archive. */
    void begin(std::string_view name);

    /** `phrases` are what is known of `bytes`: see Deflater::append. */
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
