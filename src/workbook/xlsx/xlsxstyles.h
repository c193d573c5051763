#pragma once

#include <string>

namespace workbook
{

struct BookData;
class StyleTable;

/** Returns the content of xl/styles.xml. The cell formats are in the order of the style table. */
std::string xlsxStyles(const BookData &book, const StyleTable &styles);

} // namespace workbook
