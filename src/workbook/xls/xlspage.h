#pragma once

namespace workbook
{

class RecordWriter;
struct SheetData;

/** What precedes the columns of a sheet: calculation, printing, page. */
void writeXlsPage(const SheetData &sheet, unsigned defaultRowTwips, RecordWriter &out);

/** What follows the cells: the window with its frozen panes. `isFirst`: the sheet shown first. */
void writeXlsView(const SheetData &sheet, bool isFirst, RecordWriter &out);

} // namespace workbook
