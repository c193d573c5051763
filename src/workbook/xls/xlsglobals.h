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

/** Writes the record with which each part of the stream begins. */
void writeXlsBegin(XlsPart part, RecordWriter &out);

/**
 * Writes what belongs to the whole book. Returns where in the stream to fill in the position of
 * each sheet.
 */
std::vector<std::uint32_t> writeXlsGlobals(const BookData &book, const StyleTable &styles,
                                           const SharedStrings &strings, RecordWriter &out);

} // namespace workbook
