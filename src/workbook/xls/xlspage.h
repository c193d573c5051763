#pragma once

namespace workbook
{

class RecordWriter;
struct SheetData;

/**
 * Writes the settings that precede the columns of a sheet: calculation, printing, page and default
 * row height.
 */
void writeXlsPage(const SheetData &sheet, unsigned defaultRowTwips, RecordWriter &out);

/**
 * Writes the records after the cells: the window settings and the frozen panes. `isFirst` marks the
 * sheet that is shown when the book is opened.
 */
void writeXlsView(const SheetData &sheet, bool isFirst, RecordWriter &out);

} // namespace workbook
