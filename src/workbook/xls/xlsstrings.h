#pragma once

namespace workbook
{

struct BookData;
class RecordWriter;
class SharedStrings;

/**
 * Writes the shared strings and their index (SST and EXTSST). Long lists of strings continue in
 * further records (CONTINUE).
 */
void writeXlsStrings(const BookData &book, const SharedStrings &strings, RecordWriter &out);

} // namespace workbook
