#include "workbook/formula/evaluator.h"

#include "workbook/model/model.h"

#include <cmath>
#include <iterator>
#include <utility>

namespace workbook
{

namespace
{

using Kind = FormulaValue::Kind;

FormulaValue checked(double number)
{
    if (!std::isfinite(number))
        return {Kind::Overflow, 0};
    return {Kind::Number, number == 0 ? 0 : number}; // never -0
}

FormulaValue combined(Operator op, const FormulaValue &left, const FormulaValue &right)
{
    // An unknown operand may be a number, a text or an error. Treat the result as unknown even if
    // the other operand is an error.
    if (left.kind == Kind::Unknown || right.kind == Kind::Unknown)
        return {};
    if (left.kind != Kind::Number)
        return left;
    if (right.kind != Kind::Number)
        return right;
    switch (op) {
    case Operator::Add:
        return checked(left.number + right.number);
    case Operator::Subtract:
        return checked(left.number - right.number);
    case Operator::Multiply:
        return checked(left.number * right.number);
    case Operator::Divide:
        return right.number == 0 ? FormulaValue{Kind::DivisionByZero, 0}
                                 : checked(left.number / right.number);
    default:
        return {};
    }
}

} // namespace

Evaluator::Evaluator(const BookData &bookData, const SheetData &sheetData)
    : book(bookData)
    , sheet(sheetData)
{
}

FormulaValue Evaluator::valueOf(const Cell &cell, FormulaTokens formula)
{
    // Use an explicit stack instead of recursion, so that chains of formulas may have any length. A
    // formula stays on the stack, with an unknown value, until the formulas that it refers to are
    // evaluated. In a cycle, some formula refers to one that is still on the stack, so all formulas
    // of the cycle become unknown.
    const auto known = values.find(&cell);
    if (known != values.end())
        return known->second;
    std::vector<Waiting> waiting;
    waiting.push_back({&cell, std::move(formula)});
    while (!waiting.empty()) {
        const bool isNew = values.try_emplace(waiting.back().cell).second;
        if (isNew && pushOpenCells(waiting))
            continue;
        values[waiting.back().cell] = evaluate(waiting.back().formula);
        waiting.pop_back();
    }
    return values[&cell];
}

/**
 * Pushes the formulas that the last waiting formula refers to, except for formulas that are in
 * `values` or that cannot be parsed. Returns whether it pushed any.
 */
bool Evaluator::pushOpenCells(std::vector<Waiting> &waiting) const
{
    std::vector<Waiting> open;
    for (const FormulaToken &token : waiting.back().formula) {
        const Cell *cell = token.op == Operator::Cell
                               ? sheet.cells.find(token.cell.row, token.cell.column)
                               : nullptr;
        if (cell == nullptr || cell->kind() != CellKind::Formula || values.count(cell) != 0)
            continue;
        if (auto formula = parseFormula(book.formulas.at(cell->index)))
            open.push_back({cell, std::move(*formula)});
    }
    std::move(open.begin(), open.end(), std::back_inserter(waiting));
    return !open.empty();
}

FormulaValue Evaluator::cellValue(const CellReference &reference) const
{
    const Cell *cell = sheet.cells.find(reference.row, reference.column);
    if (cell == nullptr || cell->kind() == CellKind::Blank)
        return {Kind::Number, 0};
    if (cell->kind() == CellKind::Number)
        return {Kind::Number, cell->number};
    const auto known = values.find(cell);
    return known != values.end() ? known->second : FormulaValue{};
}

FormulaValue Evaluator::evaluate(const FormulaTokens &formula) const
{
    std::vector<FormulaValue> stack;
    for (const FormulaToken &token : formula) {
        switch (token.op) {
        case Operator::Number:
            stack.push_back({Kind::Number, token.number});
            break;
        case Operator::Cell:
            stack.push_back(cellValue(token.cell));
            break;
        case Operator::Plus:
        case Operator::Group:
            break;
        case Operator::Negate:
            stack.back() = combined(Operator::Subtract, {Kind::Number, 0}, stack.back());
            break;
        default: {
            const FormulaValue right = stack.back();
            stack.pop_back();
            stack.back() = combined(token.op, stack.back(), right);
        }
        }
    }
    return stack.back();
}

} // namespace workbook
