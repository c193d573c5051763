#include "workbook/formula/evaluator.h"

#include "workbook/model/model.h"

#include <cmath>

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
    // What is unknown might be an error that goes first, so the result is unknown as well.
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

FormulaValue Evaluator::valueOf(const Cell &cell)
{
    // Formulas wait on a stack of our own for those they refer to: chains may be of any length. A
    // cell that is met again while it waits is part of a cycle and counts as unknown.
    std::vector<const Cell *> waiting{&cell};
    while (!waiting.empty()) {
        const Cell *current = waiting.back();
        const auto [known, isNew] = progress.try_emplace(current);
        if (known->second.done) {
            waiting.pop_back();
            continue;
        }
        const auto formula = parseFormula(book.formulas.at(current->index));
        if (formula && isNew && openCells(*formula, waiting))
            continue;
        known->second = {true, formula ? reckon(*formula) : FormulaValue{}};
        waiting.pop_back();
    }
    return progress[&cell].value;
}

/** Appends the formulas that must be reckoned before this one; false when there are none. */
bool Evaluator::openCells(const FormulaTokens &formula, std::vector<const Cell *> &waiting) const
{
    const std::size_t before = waiting.size();
    for (const FormulaToken &token : formula) {
        if (token.op != Operator::Cell)
            continue;
        const Cell *cell = sheet.cells.find(token.first.row, token.first.column);
        if (cell != nullptr && cell->kind() == CellKind::Formula && progress.count(cell) == 0)
            waiting.push_back(cell);
    }
    return waiting.size() > before;
}

FormulaValue Evaluator::cellValue(const CellReference &reference) const
{
    const Cell *cell = sheet.cells.find(reference.row, reference.column);
    if (cell == nullptr || cell->kind() == CellKind::Blank)
        return {Kind::Number, 0};
    if (cell->kind() == CellKind::Number)
        return {Kind::Number, cell->number};
    const auto known = progress.find(cell);
    return known != progress.end() ? known->second.value : FormulaValue{};
}

FormulaValue Evaluator::reckon(const FormulaTokens &formula) const
{
    std::vector<FormulaValue> stack;
    for (const FormulaToken &token : formula) {
        switch (token.op) {
        case Operator::Number:
            stack.push_back({Kind::Number, token.number});
            break;
        case Operator::Cell:
            stack.push_back(cellValue(token.first));
            break;
        case Operator::Plus:
        case Operator::Group:
            break;
        case Operator::Negate:
            stack.back() = combined(Operator::Subtract, {Kind::Number, 0}, stack.back());
            break;
        case Operator::Percent:
            stack.back() = combined(Operator::Divide, stack.back(), {Kind::Number, 100});
            break;
        case Operator::Add:
        case Operator::Subtract:
        case Operator::Multiply:
        case Operator::Divide: {
            const FormulaValue right = stack.back();
            stack.pop_back();
            stack.back() = combined(token.op, stack.back(), right);
            break;
        }
        default:
            return {};
        }
    }
    return stack.back();
}

} // namespace workbook
