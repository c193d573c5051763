#pragma once

namespace workbook
{

struct BookData;
class RecordWriter;
class SharedStrings;

/**
 * Writes the shared strings and their index (SST and EXTSST), continued in further records as
 * needed.
 */
void writeXlsStrings(const BookData &book, const SharedStrings &strings, RecordWriter &out);

} // namespace workbook
