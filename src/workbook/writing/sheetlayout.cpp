#include "workbook/writing/sheetlayout.h"

#include <algorithm>

namespace workbook
{

std::optional<UsedRange> usedRange(const SheetData &sheet)
{
    const std::vector<Cell> &cells = sheet.cells.all();
    if (cells.empty())
        return std::nullopt;
    const auto byColumn = [](const Cell &a, const Cell &b) {
        return a.column < b.column;
    };
    const auto [left, right] = std::minmax_element(cells.begin(), cells.end(), byColumn);
    return UsedRange{static_cast<int>(cells.front().row), static_cast<int>(cells.back().row),
                     static_cast<int>(left->column), static_cast<int>(right->column)};
}

std::vector<ColumnRun> columnRuns(const SheetData &sheet)
{
    const auto alike = [](const ColumnData &a, const ColumnData &b) {
        return a.widthChars == b.widthChars && a.format == b.format && a.hidden == b.hidden;
    };
    std::vector<ColumnRun> runs;
    for (const auto &[number, data] : sheet.columns) {
        if (!runs.empty() && runs.back().last == number - 1 && alike(runs.back().data, data))
            runs.back().last = number;
        else
            runs.push_back({number, number, data});
    }
    return runs;
}

} // namespace workbook
