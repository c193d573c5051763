#pragma once

#include <optional>
#include <string_view>

namespace workbook
{

/** A cell of the formula's own sheet; `fixed` is the "$" in front. */
struct CellReference {
    int row = 0;
    int column = 0;
    bool fixedRow = false;
    bool fixedColumn = false;
};

/**
 * Takes a reference such as "K2" or "$A$1" off the front of `text`. Nothing for what only begins
 * like one ("LOG10(", "Sheet1!"); `text` is then unspecified.
 */
std::optional<CellReference> takeReference(std::u16string_view &text);

} // namespace workbook
