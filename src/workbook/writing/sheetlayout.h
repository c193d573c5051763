#pragma once

#include "workbook/model/model.h"

#include <optional>
#include <vector>

/** Functions that arrange the content of a sheet as files need it. */
namespace workbook
{

/** A range of rows and columns. The last row and column are included. */
struct UsedRange {
    int firstRow;
    int lastRow;
    int firstColumn;
    int lastColumn;
};

/** Returns the range of all cells, including blank cells. Returns nothing if there are no cells. */
std::optional<UsedRange> usedRange(const SheetData &sheet);

/** Adjacent columns with the same settings: `first` to `last`, both included. */
struct ColumnRun {
    int first;
    int last;
    ColumnData data;
};

/** Returns the columns that were set, combined into as few runs as possible, in ascending order. */
std::vector<ColumnRun> columnRuns(const SheetData &sheet);

/** A row that has cells, settings or both. The cells are [begin, end). */
struct RowSpan {
    int number;
    const RowData *properties; // null if the row has no settings
    const Cell *begin;
    const Cell *end;
};

/** Calls `visit` with a RowSpan for each row that has cells or settings, in ascending order. */
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
        while (span.end != end && static_cast<int>(span.end->row) == span.number)
            ++span.end;
        cell = span.end;
        if (isSet)
            span.properties = &row++->second;
        visit(span);
    }
}

} // namespace workbook
