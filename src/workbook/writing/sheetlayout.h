#pragma once

#include "workbook/model/model.h"

#include <optional>
#include <vector>

/** A sheet in the form that files need: in order, equal neighbours together. */
namespace workbook
{

/** All four included. */
struct UsedRange {
    int firstRow;
    int lastRow;
    int firstColumn;
    int lastColumn;
};

/** The range of the cells, blank ones included; nothing for a sheet without any. */
std::optional<UsedRange> usedRange(const SheetData &sheet);

/** Both columns included. */
struct ColumnRun {
    int first;
    int last;
    ColumnData data;
};

/** The columns that were set, ascending, as few runs as possible. */
std::vector<ColumnRun> columnRuns(const SheetData &sheet);

/** A row that has cells or was set: `properties` is null, or first equals last, but not both. */
struct RowSpan {
    int number;
    const RowData *properties;
    const Cell *first;
    const Cell *last; // one behind
};

/** Calls `visit` with every RowSpan, ascending. */
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
