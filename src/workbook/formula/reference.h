#pragma once

#include <optional>
#include <string_view>

namespace workbook
{

/** A reference to a cell of the formula's own sheet. */
struct CellReference {
    int row = 0;
    int column = 0;
    bool fixedRow = false; // written with "$", as in "K$2"
    bool fixedColumn = false;
};

/**
 * Removes and returns the reference that `text` begins with, such as "K2" or "$A$1". If `text`
 * begins with anything else, including longer names such as "LOG10(" or "Sheet1!", returns nothing,
 * and `text` is unspecified.
 */
std::optional<CellReference> takeReference(std::u16string_view &text);

} // namespace workbook
