#include "workbook/xls/compoundfile.h"

#include "workbook/writing/bytes.h"
#include "workbook/writing/bytesink.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

// header | stream | directory | allocation table (FAT) | its overflow (DIFAT)
//
// Sector n begins at 512 * (n + 1). The allocation table says for every sector which one follows
// it. The header names the first 109 sectors of the table; the overflow sectors name the others,
// 127 each, with the number of the next overflow sector at their end.

namespace workbook
{

namespace
{

constexpr std::uint32_t sectorBytes = 512;
constexpr std::uint32_t entriesPerSector = sectorBytes / 4;
constexpr std::uint32_t namedInHeader = 109;
constexpr std::uint32_t namedInOverflow = entriesPerSector - 1;
// A shorter stream would have to lie in a container of small sectors; zeros behind the last
// record are allowed, so it is made longer instead.
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

void appendEntry(std::string &out, std::u16string_view name, EntryType type, std::uint32_t child,
                 std::uint32_t firstSector, std::uint64_t size)
{
    constexpr std::size_t nameBytes = 64;
    constexpr unsigned black = 1;
    const std::size_t begin = out.size();
    for (const char16_t unit : name)
        appendU16(out, unit);
    out.resize(begin + nameBytes);
    appendU16(out, static_cast<unsigned>(2 * (name.size() + 1)));
    appendU8(out, static_cast<unsigned>(type));
    appendU8(out, black);
    appendU32(out, noEntry); // left
    appendU32(out, noEntry); // right
    appendU32(out, child);
    out.append(16 + 4 + 8 + 8, '\0'); // class, state, times of creation and change
    appendU32(out, firstSector);
    appendU64(out, size);
}

void appendUnusedEntry(std::string &out)
{
    out.append(64 + 4, '\0');
    for (int link = 0; link < 3; ++link)
        appendU32(out, noEntry);
    out.append(16 + 4 + 8 + 8 + 4 + 8, '\0');
}

} // namespace

/** Counts of sectors; they stand in the file in this order. */
struct CompoundFile::Layout {
    explicit Layout(std::uint64_t bytes)
        : streamBytes(std::max(bytes, minStreamBytes))
        , stream(static_cast<std::uint32_t>((streamBytes + sectorBytes - 1) / sectorBytes))
    {
        // The tables have entries for their own sectors, too.
        for (std::uint32_t before = 0; before != total();) {
            before = total();
            table = divideUp(before, entriesPerSector);
            overflow = divideUp(table - std::min(table, namedInHeader), namedInOverflow);
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

CompoundFile::CompoundFile(ByteSink &target)
    : sink(target)
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
    std::string sector;
    appendEntry(sector, u"Root Entry", EntryType::Root, 1, endOfChain, 0);
    appendEntry(sector, u"Workbook", EntryType::Stream, noEntry, 0, layout.streamBytes);
    appendUnusedEntry(sector);
    appendUnusedEntry(sector);
    sink.append(sector);
}

void CompoundFile::writeAllocation(const Layout &layout)
{
    std::string table;
    for (std::uint32_t sector = 1; sector < layout.stream; ++sector)
        appendU32(table, sector);
    appendU32(table, endOfChain);
    appendU32(table, endOfChain); // the directory
    for (std::uint32_t i = 0; i < layout.table; ++i)
        appendU32(table, tableSector);
    for (std::uint32_t i = 0; i < layout.overflow; ++i)
        appendU32(table, overflowSector);
    while (table.size() < std::size_t{layout.table} * sectorBytes)
        appendU32(table, freeSector);
    sink.append(table);
}

void CompoundFile::writeOverflow(const Layout &layout)
{
    std::string sectors;
    std::uint32_t named = namedInHeader;
    for (std::uint32_t i = 0; i < layout.overflow; ++i) {
        for (std::uint32_t k = 0; k < namedInOverflow; ++k, ++named)
            appendU32(sectors, named < layout.table ? layout.tableAt() + named : freeSector);
        const bool isLast = i + 1 == layout.overflow;
        appendU32(sectors, isLast ? endOfChain : layout.overflowAt() + i + 1);
    }
    sink.append(sectors);
}

void CompoundFile::fillHeader(const Layout &layout)
{
    std::string header("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    header.append(16, '\0');
    appendU16(header, 0x003E); // minor version
    appendU16(header, 3);      // version
    appendU16(header, 0xFFFE); // little-endian
    appendU16(header, 9);      // sectors of 2^9 bytes
    appendU16(header, 6);      // small sectors of 2^6 bytes
    header.append(6, '\0');
    appendU32(header, 0); // sectors of the directory: not told in this version
    appendU32(header, layout.table);
    appendU32(header, layout.directoryAt());
    appendU32(header, 0);
    appendU32(header, minStreamBytes);
    appendU32(header, endOfChain); // no small sectors
    appendU32(header, 0);
    appendU32(header, layout.overflow == 0 ? endOfChain : layout.overflowAt());
    appendU32(header, layout.overflow);
    for (std::uint32_t i = 0; i < namedInHeader; ++i)
        appendU32(header, i < layout.table ? layout.tableAt() + i : freeSector);
    sink.patch(0, header);
}

} // namespace workbook
