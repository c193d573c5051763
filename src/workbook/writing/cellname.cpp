#include "workbook/writing/cellname.h"

namespace workbook
{

std::string columnName(int column)
{
    // The name is a number in base 26 with the digits A = 1 to Z = 26. There is no digit for 0, so
    // each step subtracts one.
    std::string name;
    for (int rest = column + 1; rest > 0; rest = (rest - 1) / 26)
        name.insert(name.begin(), static_cast<char>('A' + (rest - 1) % 26));
    return name;
}

std::string cellName(int row, int column)
{
    return columnName(column) + std::to_string(row + 1);
}

} // namespace workbook
