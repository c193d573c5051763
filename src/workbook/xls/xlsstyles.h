#pragma once

#include <cstddef>

namespace workbook
{

struct BookData;
class RecordWriter;
class StyleTable;

/** Writes the fonts, number formats, cell formats and the single named style of an .xls file. */
void writeXlsStyles(const BookData &book, const StyleTable &styles, RecordWriter &out);

/** Converts the index of a cell format in the style table to its index in the file. */
constexpr unsigned xlsFormatIndex(std::size_t tableIndex)
{
    constexpr std::size_t defaultFormat = 15; // formats 0 to 14 are the named style and its copies
    return static_cast<unsigned>(defaultFormat + tableIndex);
}

} // namespace workbook
