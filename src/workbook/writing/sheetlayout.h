#pragma once

#include "workbook/model/model.h"

#include <optional>
#include <vector>

/** The content of a sheet as files need it: in order, with equal neighbours combined. */
namespace workbook
{

/** All four included. */
struct UsedRange {
    int firstRow;
    int lastRow;
    int firstColumn;
    int lastColumn;
};

/** Returns the range of all cells, including blank ones; nothing if there are none. */
std::optional<UsedRange> usedRange(const SheetData &sheet);

/** Both columns included. */
struct ColumnRun {
    int first;
    int last;
    ColumnData data;
};

/** Returns the columns that were set, in ascending order and in as few runs as possible. */
std::vector<ColumnRun> columnRuns(const SheetData &sheet);

/** A row that has cells, was set, or both. `properties` is null if it was not set. */
struct RowSpan {
    int number;
    const RowData *properties;
    const Cell *first;
    const Cell *last; // one behind
};

/** Calls `visit` for every RowSpan, in ascending order. */
template <class Visit>
void forEachRow(const SheetData &sheet, Visit visit)
{
    const Cell *cell = sheet.cells.all().data();
    const Cell *const end = cell + sheet.cells.all().size();
    auto row = sheet.rows.begin();
    while (cell != end || row != sheet.rows.end()) {
        const bool isSet =
            row != sheet.rows.end() && (cell == end || row->first <= static_cast<int>(cell->row));
        RowSpan span{isSet ? row->first : static_cast<int>(cell->row), nullptr, cell, cell};
        while (span.last != end && static_cast<int>(span.last->row) == span.number)
            ++span.last;
        cell = span.last;
        if (isSet)
            span.properties = &row++->second;
        visit(span);
    }
}

} // namespace workbook
