#pragma once

#include <cstddef>

namespace workbook
{

struct BookData;
class RecordWriter;
class StyleTable;

/** Writes the fonts, number formats, cell formats and the single named style of an .xls file. */
void writeXlsStyles(const BookData &book, const StyleTable &styles, RecordWriter &out);

/** Returns the index in the file of a format of the table, whose index 0 is the default format. */
constexpr unsigned xlsFormatIndex(std::size_t tableIndex)
{
    constexpr std::size_t defaultFormat = 15; // the ones before it belong to the named style
    return static_cast<unsigned>(defaultFormat + tableIndex);
}

} // namespace workbook
