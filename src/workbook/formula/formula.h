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
    Plus,  // unary; has no effect
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
 * Parses a formula that consists of numbers, the operators + - * /, signs, parentheses and
 * references to cells of the formula's own sheet. `text` must not include the leading "=". Returns
 * nothing if the formula contains anything else, is malformed, or has more than 63 nested signs and
 * parentheses.
 */
std::optional<FormulaTokens> parseFormula(std::u16string_view text);

} // namespace workbook
