#pragma once

#include "workbook/formula/reference.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbook
{

enum class Operator {
    Number,
    Text,
    Cell,
    Range,
    Group, // the parentheses around what stands before
    Plus,
    Negate,
    Percent,
    Power,
    Multiply,
    Divide,
    Add,
    Subtract,
    Join,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Call,
    Then, // the condition of an IF ends
    Else, // another branch of an IF ends
};

enum class Function { Count, If, Sum, Average, Min, Max, Abs, Round };

/** Which members count depends on `op`. */
struct FormulaToken {
    Operator op = Operator::Number;
    double number = 0;
    std::u16string text;
    CellReference first; // of a range, or the cell
    CellReference last;
    bool wholeCells = false; // a cell or range that goes to a function as such, not its value
    Function function = Function::Sum;
    unsigned operands = 0; // of a call
};

/** A formula in postfix order: operands, then their operator. "1+2*3" is 1 2 3 * +. */
using FormulaTokens = std::vector<FormulaToken>;

/**
 * Reads a formula without its leading "=". Nothing for what is no formula, and for what this
 * engine does not know: other sheets, names, arrays, functions other than those above, and more
 * than 64 levels of signs, parentheses and calls.
 */
std::optional<FormulaTokens> parseFormula(std::u16string_view text);

} // namespace workbook
