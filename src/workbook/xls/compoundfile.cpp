#include "workbook/xls/compoundfile.h"

#include "workbook/writing/buffer.h"
#include "workbook/writing/bytesink.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

// header | stream | directory | allocation table (FAT) | its overflow (DIFAT)
//
// Sector n begins at 512 * (n + 1). The allocation table has an entry for every sector: the number
// of the next sector of the same chain, or a special value. The header lists the first 109 sectors
// of the table. Each overflow sector lists 127 more, then the number of the next overflow sector.

namespace workbook
{

namespace
{

constexpr std::uint32_t sectorBytes = 512;
constexpr std::uint32_t entriesPerSector = sectorBytes / 4;
constexpr std::uint32_t listedInHeader = 109;
constexpr std::uint32_t listedInOverflow = entriesPerSector - 1;
// A shorter stream would have to be stored in small sectors. To avoid small sectors, finish() pads
// the stream with zeros, which are allowed after the last record.
constexpr std::uint64_t minStreamBytes = 4096;

constexpr std::uint32_t freeSector = 0xFFFFFFFF;
constexpr std::uint32_t endOfChain = 0xFFFFFFFE;
constexpr std::uint32_t tableSector = 0xFFFFFFFD;
constexpr std::uint32_t overflowSector = 0xFFFFFFFC;
constexpr std::uint32_t noEntry = 0xFFFFFFFF;

constexpr std::uint32_t divideUp(std::uint32_t number, std::uint32_t by)
{
    return (number + by - 1) / by;
}

enum class EntryType : unsigned { Stream = 2, Root = 5 };

void appendEntry(Buffer &out, std::u16string_view name, EntryType type, std::uint32_t child,
                 std::uint32_t firstSector, std::uint64_t size)
{
    constexpr std::size_t nameBytes = 64;
    constexpr unsigned black = 1;
    for (const char16_t unit : name)
        out.u16(unit);
    out.zeros(nameBytes - 2 * name.size());
    out.u16(static_cast<unsigned>(2 * (name.size() + 1)));
    out.u8(static_cast<unsigned>(type)).u8(black);
    out.u32(noEntry).u32(noEntry).u32(child); // left, right, child
    out.zeros(16 + 4 + 8 + 8);                // class, state, times of creation and change
    out.u32(firstSector).u64(size);
}

void appendUnusedEntry(Buffer &out)
{
    out.zeros(64 + 4).u32(noEntry).u32(noEntry).u32(noEntry).zeros(16 + 4 + 8 + 8 + 4 + 8);
}

} // namespace

/** The number of sectors of each part of the file, and the sector where each part begins. */
struct CompoundFile::Layout {
    explicit Layout(std::uint64_t bytes)
        : streamBytes(std::max(bytes, minStreamBytes))
        , stream(static_cast<std::uint32_t>((streamBytes + sectorBytes - 1) / sectorBytes))
    {
        // The table also has entries for its own sectors and for the overflow sectors, so repeat
        // until the total no longer changes.
        for (std::uint32_t before = 0; before != total();) {
            before = total();
            table = divideUp(before, entriesPerSector);
            overflow = divideUp(table - std::min(table, listedInHeader), listedInOverflow);
        }
    }

    [[nodiscard]] std::uint32_t directoryAt() const { return stream; }
    [[nodiscard]] std::uint32_t tableAt() const { return stream + 1; }
    [[nodiscard]] std::uint32_t overflowAt() const { return tableAt() + table; }
    [[nodiscard]] std::uint32_t total() const { return overflowAt() + overflow; }

    std::uint64_t streamBytes;
    std::uint32_t stream;
    std::uint32_t table = 0;
    std::uint32_t overflow = 0;
};

CompoundFile::CompoundFile(ByteSink &byteSink)
    : sink(byteSink)
{
    padTo(sectorBytes);
}

void CompoundFile::padTo(std::uint64_t size)
{
    if (sink.size() < size)
        sink.append(std::string(static_cast<std::size_t>(size - sink.size()), '\0'));
}

void CompoundFile::finish()
{
    const std::uint64_t bytes = sink.size() - sectorBytes;
    if (bytes > std::numeric_limits<std::int32_t>::max()) {
        sink.fail();
        return;
    }
    const Layout layout(bytes);
    padTo(std::uint64_t{sectorBytes} * (layout.stream + 1));
    writeDirectory(layout);
    writeAllocation(layout);
    writeOverflow(layout);
    fillHeader(layout);
}

void CompoundFile::writeDirectory(const Layout &layout)
{
    Buffer sector;
    appendEntry(sector, u"Root Entry", EntryType::Root, 1, endOfChain, 0);
    appendEntry(sector, u"Workbook", EntryType::Stream, noEntry, 0, layout.streamBytes);
    appendUnusedEntry(sector);
    appendUnusedEntry(sector);
    sink.append(sector.view());
}

void CompoundFile::writeAllocation(const Layout &layout)
{
    Buffer table;
    for (std::uint32_t sector = 1; sector < layout.stream; ++sector)
        table.u32(sector);
    table.u32(endOfChain);
    table.u32(endOfChain); // the directory
    for (std::uint32_t i = 0; i < layout.table; ++i)
        table.u32(tableSector);
    for (std::uint32_t i = 0; i < layout.overflow; ++i)
        table.u32(overflowSector);
    while (table.size() < std::size_t{layout.table} * sectorBytes)
        table.u32(freeSector);
    sink.append(table.view());
}

void CompoundFile::writeOverflow(const Layout &layout)
{
    Buffer sectors;
    std::uint32_t listed = listedInHeader;
    for (std::uint32_t i = 0; i < layout.overflow; ++i) {
        for (std::uint32_t k = 0; k < listedInOverflow; ++k, ++listed)
            sectors.u32(listed < layout.table ? layout.tableAt() + listed : freeSector);
        const bool isLast = i + 1 == layout.overflow;
        sectors.u32(isLast ? endOfChain : layout.overflowAt() + i + 1);
    }
    sink.append(sectors.view());
}

void CompoundFile::fillHeader(const Layout &layout)
{
    constexpr unsigned minorVersion = 0x003E;
    constexpr unsigned version = 3;
    constexpr unsigned littleEndian = 0xFFFE;
    constexpr unsigned sectorShift = 9;
    constexpr unsigned smallSectorShift = 6;
    Buffer header;
    header.append("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1").zeros(16);
    header.u16(minorVersion).u16(version).u16(littleEndian);
    header.u16(sectorShift).u16(smallSectorShift).zeros(6);
    header.u32(0).u32(layout.table); // 0: version 3 does not store the directory's size
    header.u32(layout.directoryAt()).u32(0);
    header.u32(minStreamBytes).u32(endOfChain).u32(0); // no small sectors
    header.u32(layout.overflow == 0 ? endOfChain : layout.overflowAt()).u32(layout.overflow);
    for (std::uint32_t i = 0; i < listedInHeader; ++i)
        header.u32(i < layout.table ? layout.tableAt() + i : freeSector);
    sink.patch(0, header.view());
}

} // namespace workbook
