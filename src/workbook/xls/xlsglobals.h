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

/** Writes the first record of a part of the stream (BOF). */
void writeXlsBegin(XlsPart part, RecordWriter &out);

/**
 * Writes the records of the book that precede its sheets. Returns, for each sheet, the position of
 * the field in which the caller must store the position of the sheet.
 */
std::vector<std::uint32_t> writeXlsGlobals(const BookData &book, const StyleTable &styles,
                                           const SharedStrings &strings, RecordWriter &out);

} // namespace workbook
