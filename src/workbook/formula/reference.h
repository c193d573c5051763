#pragma once

#include <optional>
#include <string_view>

namespace workbook
{

/** A reference to a cell of the formula's own sheet. `fixedRow` and `fixedColumn` stand for "$". */
struct CellReference {
    int row = 0;
    int column = 0;
    bool fixedRow = false;
    bool fixedColumn = false;
};

/**
 * Removes and returns a reference such as "K2" or "$A$1" at the beginning of `text`. Returns
 * nothing, and leaves `text` unspecified, if there is none or something longer, such as "LOG10(" or
 * "Sheet1!".
 */
std::optional<CellReference> takeReference(std::u16string_view &text);

} // namespace workbook
