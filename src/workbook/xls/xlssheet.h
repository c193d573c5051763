#pragma once

namespace workbook
{

struct BookData;
class RecordWriter;
class SharedStrings;
struct SheetData;
class StyleTable;

/**
 * Writes the records of one worksheet. `isFirst` marks the sheet that is shown when the book is
 * opened.
 */
void writeXlsSheet(const BookData &book, const SheetData &sheet, const StyleTable &styles,
                   const SharedStrings &strings, bool isFirst, RecordWriter &out);

} // namespace workbook
