#include "workbook/model/cellstore.h"

#include <algorithm>

namespace workbook
{

namespace
{

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
    cell.kindCode = static_cast<unsigned>(kind) & 0xFU;
    cell.format = format & 0x3FFFFFFU;
    return cell;
}

void CellStore::put(const Cell &cell)
{
    holdsErased = holdsErased || cell.kind() == CellKind::Erased;
    if (cells.empty() || before(cells.back(), cell)) {
        if (cells.empty() || cells.back().row != cell.row)
            lastRow = cells.size();
        cells.push_back(cell);
    } else if (cells.back().row == cell.row) {
        putIntoLastRow(cell);
    } else {
        cells.push_back(cell);
        lastRow = cells.size() - 1;
        ordered = false;
        // Rows that are rewritten again and again must not pile up.
        if (cells.size() >= tidyAt) {
            sort();
            tidyAt = std::max(tidyAt, 2 * cells.size());
        }
    }
}

void CellStore::putIntoLastRow(const Cell &cell)
{
    const auto begin = cells.begin() + static_cast<std::ptrdiff_t>(lastRow);
    const auto place = std::lower_bound(begin, cells.end(), cell, before);
    if (place->key() == cell.key())
        *place = cell;
    else
        cells.insert(place, cell);
}

void CellStore::sort()
{
    if (!ordered) {
        std::stable_sort(cells.begin(), cells.end(), before);
        // Of equal places the last one stays: unique() from the far end.
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
    ordered = true;
    holdsErased = false;
    const Cell start =
        cells.empty() ? Cell{} : makeCell(static_cast<int>(cells.back().row), 0, CellKind::Erased);
    lastRow = static_cast<std::size_t>(std::lower_bound(cells.begin(), cells.end(), start, before) -
                                       cells.begin());
}

const Cell *CellStore::find(int row, int column) const
{
    const Cell wanted = makeCell(row, column, CellKind::Erased);
    const auto place = std::lower_bound(cells.begin(), cells.end(), wanted, before);
    return place != cells.end() && place->key() == wanted.key() ? &*place : nullptr;
}

} // namespace workbook
