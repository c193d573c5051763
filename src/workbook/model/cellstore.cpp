#include "workbook/model/cellstore.h"

#include <algorithm>

namespace workbook
{

namespace
{

constexpr std::size_t minTail = 4096;

bool before(const Cell &a, const Cell &b)
{
    return a.key() < b.key();
}

} // namespace

Cell makeCell(int row, int column, CellKind kind, std::uint32_t format)
{
    Cell cell{};
    cell.row = static_cast<unsigned>(row) & 0xFFFFFU;
    cell.column = static_cast<unsigned>(column) & 0x3FFFU;
    cell.setKind(kind);
    cell.format = format & 0x3FFFFFFU;
    return cell;
}

void CellStore::put(const Cell &cell)
{
    const bool inOrder = isSorted() && (cells.empty() || before(cells.back(), cell));
    if (!inOrder && replace(cell))
        return;
    // push_back() may throw, so call it before changing any other member.
    cells.push_back(cell);
    holdsErased = holdsErased || cell.kind() == CellKind::Erased;
    if (inOrder)
        ++sortedEnd;
    else if (cells.size() - sortedEnd >= std::max(sortedEnd, minTail))
        sort();
}

/**
 * Replaces the stored cell at the row and column of `cell`. Returns false if there is no such
 * stored cell. Also returns false if there is an unsorted tail, which may contain such a cell too.
 */
bool CellStore::replace(const Cell &cell)
{
    if (!isSorted())
        return false;
    const auto place = std::lower_bound(cells.begin(), cells.end(), cell, before);
    if (place == cells.end() || place->key() != cell.key())
        return false;
    *place = cell;
    holdsErased = holdsErased || cell.kind() == CellKind::Erased;
    return true;
}

void CellStore::sort() noexcept
{
    if (!isSorted()) {
        // stable_sort() and inplace_merge() keep the order of cells with equal keys: the cell
        // written last stays last.
        const auto tail = cells.begin() + static_cast<std::ptrdiff_t>(sortedEnd);
        std::stable_sort(tail, cells.end(), before);
        std::inplace_merge(cells.begin(), tail, cells.end(), before);
        // unique() keeps the first of several cells with the same key. In reverse order, that is
        // the cell written last.
        const auto samePlace = [](const Cell &a, const Cell &b) {
            return a.key() == b.key();
        };
        const auto kept = std::unique(cells.rbegin(), cells.rend(), samePlace);
        cells.erase(cells.begin(), kept.base());
    }
    if (holdsErased) {
        const auto erased = [](const Cell &cell) {
            return cell.kind() == CellKind::Erased;
        };
        cells.erase(std::remove_if(cells.begin(), cells.end(), erased), cells.end());
    }
    sortedEnd = cells.size();
    holdsErased = false;
}

const Cell *CellStore::find(int row, int column) const
{
    const Cell wanted = makeCell(row, column, CellKind::Erased);
    const auto place = std::lower_bound(cells.begin(), cells.end(), wanted, before);
    return place != cells.end() && place->key() == wanted.key() ? &*place : nullptr;
}

} // namespace workbook
