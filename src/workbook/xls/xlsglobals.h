#pragma once

#include <cstdint>
#include <vector>

namespace workbook
{

struct BookData;
class RecordWriter;
class SharedStrings;
class StyleTable;

enum class XlsPart : unsigned { Globals = 0x0005, Sheet = 0x0010 };

/** Writes the BOF record of `part`. Each part of the stream begins with such a record. */
void writeXlsBegin(XlsPart part, RecordWriter &out);

/**
 * Writes the globals: the records before those of the sheets. Returns, for each sheet, the position
 * of the field in which the caller must store the position of the sheet.
 */
std::vector<std::uint32_t> writeXlsGlobals(const BookData &book, const StyleTable &styles,
                                           const SharedStrings &strings, RecordWriter &out);

} // namespace workbook
