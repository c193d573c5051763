#pragma once

#include "workbook/formula/formula.h"

#include <optional>
#include <string>

namespace workbook
{

/**
 * The tokens that an .xls stores for a formula. Nothing for cells outside an .xls sheet, and for
 * more than 1,800 bytes.
 */
std::optional<std::string> compileXlsFormula(const FormulaTokens &formula);

} // namespace workbook
