#pragma once

#include <string>

namespace workbook
{

/** "A" for column 0, "AA" for column 26. */
std::string columnName(int column);

/** "A1" for row 0 of column 0. */
std::string cellName(int row, int column);

} // namespace workbook
