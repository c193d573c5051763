#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace workbook
{

/**
 * The tokens that an .xls stores for a formula (without its leading "="). Nothing for what
 * parseFormula does not know, for cells outside an .xls sheet, texts above 255 characters and
 * formulas of more than 1,800 bytes.
 */
std::optional<std::string> compileXlsFormula(std::u16string_view text);

} // namespace workbook
