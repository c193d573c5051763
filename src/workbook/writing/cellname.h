#pragma once

#include <string>

namespace workbook
{

/** Returns "A" for column 0, "AA" for column 26. */
std::string columnName(int column);

/** Returns "A1" for row 0 and column 0. */
std::string cellName(int row, int column);

} // namespace workbook
