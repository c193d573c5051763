#pragma once

#include "workbook/model/model.h"

#include <optional>
#include <vector>

/** The content of a sheet as files need it: in order, with equal columns combined. */
namespace workbook
{

/** A range of rows and columns, including the last ones. */
struct UsedRange {
    int firstRow;
    int lastRow;
    int firstColumn;
    int lastColumn;
};

/** Returns the range of all cells, including blank ones; nothing if the sheet has no cells. */
std::optional<UsedRange> usedRange(const SheetData &sheet);

/** Adjacent columns with the same settings, `first` to `last`, both included. */
struct ColumnRun {
    int first;
    int last;
    ColumnData data;
};

/** Returns the columns that were set, in ascending order and in as few runs as possible. */
std::vector<ColumnRun> columnRuns(const SheetData &sheet);

/** A row that has cells or settings, or both. Its cells are [begin, end). */
struct RowSpan {
    int number;
    const RowData *properties; // null without settings
    const Cell *begin;
    const Cell *end;
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
        while (span.end != end && static_cast<int>(span.end->row) == span.number)
            ++span.end;
        cell = span.end;
        if (isSet)
            span.properties = &row++->second;
        visit(span);
    }
}

} // namespace workbook
