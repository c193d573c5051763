#pragma once

#include <string>

namespace workbook
{

struct BookData;
class StyleTable;

/** Returns the part xl/styles.xml. Cell formats are in the order of the table. */
std::string xlsxStyles(const BookData &book, const StyleTable &styles);

} // namespace workbook
