#pragma once

namespace workbook
{

struct BookData;
class RecordWriter;
class SharedStrings;
struct SheetData;
class StyleTable;

/** Writes the records of one worksheet. `isFirst`: the one that is shown when the file opens. */
void writeXlsSheet(const BookData &book, const SheetData &sheet, const StyleTable &styles,
                   const SharedStrings &strings, bool isFirst, RecordWriter &out);

} // namespace workbook
