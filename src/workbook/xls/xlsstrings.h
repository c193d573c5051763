#pragma once

namespace workbook
{

struct BookData;
class RecordWriter;
class SharedStrings;

/** The shared strings and their index (SST and EXTSST), cut into records where they are long. */
void writeXlsStrings(const BookData &book, const SharedStrings &strings, RecordWriter &out);

} // namespace workbook
