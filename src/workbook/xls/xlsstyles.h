#pragma once

#include <cstddef>

namespace workbook
{

struct BookData;
class RecordWriter;
class StyleTable;

/** The fonts, number formats, cell formats and the one named style of an .xls. */
void writeXlsStyles(const BookData &book, const StyleTable &styles, RecordWriter &out);

/** The index in the file of a format of the table; 0 there is the default format. */
constexpr unsigned xlsFormatIndex(std::size_t tableIndex)
{
    constexpr std::size_t defaultFormat = 15; // those before it belong to the named style
    return static_cast<unsigned>(defaultFormat + tableIndex);
}

} // namespace workbook
