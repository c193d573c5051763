#include "workbook/xlsx/zipwriter.h"

#include "workbook/writing/buffer.h"
#include "workbook/writing/bytesink.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

#include <zlib.h>

// local header:  signature, common, name          followed by the deflated bytes
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
constexpr unsigned version = 20; // deflate, no more
constexpr unsigned methodDeflate = 8;
constexpr unsigned firstDate = (1U << 5U) | 1U; // 1 January 1980
constexpr std::uint64_t signatureBytes = 4;

// Level 6 spends nearly all its time in long hash chains, which sheets of short similar tags build
// up without a gain; a limit of 16 halves the time and costs 2 % in size.
constexpr int level = 6;
constexpr int rawDeflateWindow = -15;
constexpr int memoryLevel = 8;
constexpr int goodLength = 16;
constexpr int maxLazy = 32;
constexpr int niceLength = 64;
constexpr int maxChain = 16;

} // namespace

// From where all other memory comes.
static void *allocate(void * /*owner*/, uInt items, uInt bytes)
{
    const std::size_t size = std::size_t{items} * bytes;
    return ::operator new(size, std::nothrow);
}

static void release(void * /*owner*/, void *block)
{
    ::operator delete(block);
}

struct ZipWriter::Deflater {
    Deflater()
    {
        stream.zalloc = allocate;
        stream.zfree = release;
        ready = deflateInit2(&stream, level, Z_DEFLATED, rawDeflateWindow, memoryLevel,
                             Z_DEFAULT_STRATEGY) == Z_OK;
    }
    ~Deflater() { deflateEnd(&stream); }
    Deflater(const Deflater &) = delete;
    Deflater &operator=(const Deflater &) = delete;

    /** Before each entry: a reset takes the tuning back, too. */
    void restart()
    {
        ready = ready && deflateReset(&stream) == Z_OK &&
                deflateTune(&stream, goodLength, maxLazy, niceLength, maxChain) == Z_OK;
    }

    z_stream stream{};
    std::array<char, 0x10000> packed{};
    bool ready = false;
};

ZipWriter::ZipWriter(ByteSink &target)
    : sink(target)
    , deflater(std::make_unique<Deflater>())
{
}

ZipWriter::~ZipWriter() = default;

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
    deflater->restart();
    if (!deflater->ready)
        sink.fail();
    Entry entry;
    entry.name = name;
    entry.offset = sink.size();
    Buffer header;
    header.u32(localSignature);
    appendCommonHeader(header, entry);
    sink.append(header.append(entry.name).view());
    entries.push_back(std::move(entry));
}

void ZipWriter::append(std::string_view bytes)
{
    Entry &entry = entries.back();
    const auto *data = reinterpret_cast<const Bytef *>(bytes.data());
    entry.checksum = static_cast<std::uint32_t>(crc32_z(entry.checksum, data, bytes.size()));
    entry.plainBytes += bytes.size();
    deflate(bytes, Z_NO_FLUSH);
}

void ZipWriter::deflate(std::string_view bytes, int flush)
{
    z_stream &stream = deflater->stream;
    do {
        const std::size_t step =
            std::min<std::size_t>(bytes.size(), std::numeric_limits<uInt>::max());
        stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
        stream.avail_in = static_cast<uInt>(step);
        bytes.remove_prefix(step);
        do {
            stream.next_out = reinterpret_cast<Bytef *>(deflater->packed.data());
            stream.avail_out = static_cast<uInt>(deflater->packed.size());
            ::deflate(&stream, flush);
            const std::size_t packed = deflater->packed.size() - stream.avail_out;
            sink.append({deflater->packed.data(), packed});
            entries.back().packedBytes += packed;
        } while (sink.ok() && stream.avail_out == 0);
    } while (sink.ok() && !bytes.empty());
}

void ZipWriter::end()
{
    deflate({}, Z_FINISH);
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
