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

/** Writes the record that each part of the stream begins with. */
void writeXlsBegin(XlsPart part, RecordWriter &out);

/**
 * Writes what belongs to the whole book. Returns, for each sheet, the place in the stream where the
 * sheet's position must be filled in.
 */
std::vector<std::uint32_t> writeXlsGlobals(const BookData &book, const StyleTable &styles,
                                           const SharedStrings &strings, RecordWriter &out);

} // namespace workbook
