#pragma once

#include "workbook/formula/reference.h"

#include <optional>
#include <string_view>
#include <vector>

namespace workbook
{

enum class Operator {
    Number,
    Cell,
    Group, // parentheses around the previous operand
    Plus,
    Negate,
    Multiply,
    Divide,
    Add,
    Subtract
};

struct FormulaToken {
    Operator op = Operator::Number;
    double number = 0;  // if `op` is Number
    CellReference cell; // if `op` is Cell
};

/** A formula in postfix order: each operator follows its operands. "1+2*3" is 1 2 3 * +. */
using FormulaTokens = std::vector<FormulaToken>;

/**
 * Parses a formula that consists of cells of the same sheet, numbers, + - * /, signs and
 * parentheses, with at most 63 nested signs and parentheses. `text` must not include the leading
 * "=". Returns nothing for any other formula.
 */
std::optional<FormulaTokens> parseFormula(std::u16string_view text);

} // namespace workbook
