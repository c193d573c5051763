#pragma once

#include "workbook/formula/formula.h"
#include "workbook/model/cellstore.h"

#include <unordered_map>
#include <vector>

namespace workbook
{

struct BookData;
struct SheetData;

/** The value of a formula. The kind is Unknown if the engine cannot compute the value. */
struct FormulaValue {
    enum class Kind { Unknown, Number, DivisionByZero, Overflow };

    Kind kind = Kind::Unknown;
    double number = 0;
};

/**
 * Evaluates the formulas of one sheet, so that programs which only display a file show the right
 * values. An empty cell counts as 0. A formula has an unknown value if it is part of a cycle, if
 * parseFormula() cannot parse it, or if it refers to a text or to an unknown value. Chains of
 * references may have any length.
 */
class Evaluator
{
public:
    /** The cells of the sheet must be sorted and must not change. */
    Evaluator(const BookData &book, const SheetData &sheet);

    /** Returns the value of `cell`, which contains a formula. `formula` is the parsed formula. */
    FormulaValue valueOf(const Cell &cell, FormulaTokens formula);

private:
    /** A formula that waits for the values of the formulas that it refers to. */
    struct Waiting {
        const Cell *cell;
        FormulaTokens formula;
    };

    bool pushOpenCells(std::vector<Waiting> &waiting) const;
    FormulaValue evaluate(const FormulaTokens &formula) const;
    FormulaValue cellValue(const CellReference &reference) const;

    const BookData &book;
    const SheetData &sheet;
    std::unordered_map<const Cell *, FormulaValue> values; // Unknown while a formula waits
};

} // namespace workbook
