#pragma once

#include "workbook/formula/formula.h"

#include <optional>
#include <string>

namespace workbook
{

/**
 * Returns the tokens that an .xls file stores for a formula. Returns nothing if the formula refers
 * to cells outside an .xls sheet, or if its tokens take more than 1,800 bytes.
 */
std::optional<std::string> compileXlsFormula(const FormulaTokens &formula);

} // namespace workbook
