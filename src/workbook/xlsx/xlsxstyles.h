#pragma once

#include <string>

namespace workbook
{

struct BookData;
class StyleTable;

/** The part xl/styles.xml; cell formats are in the order of the table. */
std::string xlsxStyles(const BookData &book, const StyleTable &styles);

} // namespace workbook
