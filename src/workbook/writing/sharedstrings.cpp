#include "workbook/writing/sharedstrings.h"

#include "workbook/model/model.h"

#include <limits>

namespace workbook
{

SharedStrings::SharedStrings(const BookData &book, Empty empty)
{
    constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
    numbers.assign(book.strings.size(), none);
    for (const SheetData &sheet : book.sheets) {
        for (const Cell &cell : sheet.cells.all()) {
            if (cell.kind() != CellKind::Text ||
                (empty == Empty::LeftOut && book.strings.at(cell.index).empty()))
                continue;
            ++cellCount;
            std::uint32_t &number = numbers[cell.index];
            if (number == none) {
                number = static_cast<std::uint32_t>(order.size());
                order.push_back(cell.index);
            }
        }
    }
}

} // namespace workbook
