#include "workbook/writing/sharedstrings.h"

#include "workbook/model/model.h"

#include <algorithm>

namespace workbook
{

SharedStrings::SharedStrings(const BookData &book, Empty empty)
    : numbers(book.strings.size())
{
    std::vector<std::uint32_t> uses(book.strings.size());
    for (const SheetData &sheet : book.sheets) {
        for (const Cell &cell : sheet.cells.all()) {
            if (cell.kind() != CellKind::Text ||
                (empty == Empty::LeftOut && book.strings.at(cell.index).empty()))
                continue;
            ++cellCount;
            if (++uses[cell.index] == 1)
                order.push_back(cell.index);
        }
    }
    // Sort only texts that are used more than once. In a book with many texts, most are used once.
    const auto firstSingle = std::stable_partition(
        order.begin(), order.end(), [&](std::uint32_t text) { return uses[text] > 1; });
    std::stable_sort(order.begin(), firstSingle,
                     [&](std::uint32_t a, std::uint32_t b) { return uses[a] > uses[b]; });
    for (std::uint32_t number = 0; number < order.size(); ++number)
        numbers[order[number]] = number;
}

} // namespace workbook
