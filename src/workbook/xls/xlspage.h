#pragma once

namespace workbook
{

class RecordWriter;
struct SheetData;

/** Writes what precedes the columns of a sheet: calculation, printing, page. */
void writeXlsPage(const SheetData &sheet, unsigned defaultRowTwips, RecordWriter &out);

/**
 * Writes what follows the cells: the window with its frozen panes. `isFirst` marks the sheet that
 * is shown first.
 */
void writeXlsView(const SheetData &sheet, bool isFirst, RecordWriter &out);

} // namespace workbook
