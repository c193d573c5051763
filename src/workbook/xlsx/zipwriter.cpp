#include "workbook/xlsx/zipwriter.h"

#include "workbook/writing/buffer.h"
#include "workbook/writing/bytesink.h"

#include <algorithm>
#include <limits>

#include <zlib.h>

// local header:  signature, common, name; followed by the deflated bytes
// central entry: signature, made by, common, comment length, disk, attributes (2 + 4), offset, name
// common:        version, flags, method, time, date, checksum, packed and plain size (4 bytes
//                each), name length, extra length
// end record:    signature, disk numbers (2 x 2), entries (2 x 2), central size, central offset,
//                comment length

namespace workbook
{

namespace
{

constexpr std::uint32_t localSignature = 0x04034B50;
constexpr std::uint32_t centralSignature = 0x02014B50;
constexpr std::uint32_t endSignature = 0x06054B50;
constexpr unsigned version = 20; // 2.0, the first version with deflate
constexpr unsigned methodDeflate = 8;
constexpr unsigned firstDate = (1U << 5U) | 1U; // 1 January 1980
constexpr std::uint64_t signatureBytes = 4;

} // namespace

ZipWriter::ZipWriter(ByteSink &byteSink)
    : sink(byteSink)
{
}

void ZipWriter::checkRange(std::uint64_t value)
{
    if (value > std::numeric_limits<std::uint32_t>::max())
        sink.fail();
}

void ZipWriter::appendCommonHeader(Buffer &out, const Entry &entry)
{
    out.u16(version).u16(0).u16(methodDeflate).u16(0).u16(firstDate).u32(entry.checksum);
    out.u32(static_cast<std::uint32_t>(entry.packedBytes));
    out.u32(static_cast<std::uint32_t>(entry.plainBytes));
    out.u16(static_cast<unsigned>(entry.name.size())).u16(0);
}

void ZipWriter::begin(std::string_view name)
{
    Entry entry;
    entry.name = name;
    entry.offset = sink.size();
    Buffer header;
    header.u32(localSignature);
    appendCommonHeader(header, entry);
    sink.append(header.append(entry.name).view());
    entries.push_back(std::move(entry));
}

void ZipWriter::append(std::string_view bytes, const std::vector<Phrase> &phrases)
{
    Entry &entry = entries.back();
    const auto *data = reinterpret_cast<const Bytef *>(bytes.data());
    entry.checksum = static_cast<std::uint32_t>(crc32_z(entry.checksum, data, bytes.size()));
    entry.plainBytes += bytes.size();
    if (sink.ok())
        deflater.append(bytes, phrases);
    appendPacked();
}

void ZipWriter::appendPacked()
{
    sink.append(deflater.packed());
    entries.back().packedBytes += deflater.packed().size();
    deflater.clear();
}

void ZipWriter::end()
{
    deflater.finish();
    appendPacked();
    const Entry &entry = entries.back();
    checkRange(std::max(entry.packedBytes, entry.plainBytes));
    Buffer header;
    appendCommonHeader(header, entry);
    sink.patch(entry.offset + signatureBytes, header.view());
}

void ZipWriter::add(std::string_view name, std::string_view bytes)
{
    begin(name);
    append(bytes);
    end();
}

void ZipWriter::finish()
{
    if (entries.size() >= std::numeric_limits<std::uint16_t>::max())
        sink.fail();
    const std::uint64_t centralOffset = sink.size();
    Buffer central;
    for (const Entry &entry : entries) {
        central.u32(centralSignature).u16(version);
        appendCommonHeader(central, entry);
        central.u16(0).u16(0).u16(0).u32(0);
        central.u32(static_cast<std::uint32_t>(entry.offset)).append(entry.name);
    }
    sink.append(central.view());

    const auto count = static_cast<unsigned>(entries.size());
    Buffer end;
    end.u32(endSignature).u32(0).u16(count).u16(count);
    end.u32(static_cast<std::uint32_t>(central.size()));
    end.u32(static_cast<std::uint32_t>(centralOffset)).u16(0);
    sink.append(end.view());
    checkRange(sink.size());
}

} // namespace workbook
