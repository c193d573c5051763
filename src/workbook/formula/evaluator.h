#pragma once

#include "workbook/formula/formula.h"
#include "workbook/model/cellstore.h"

#include <unordered_map>
#include <vector>

namespace workbook
{

struct BookData;
struct SheetData;

/** The value of a formula; Unknown where this engine cannot compute it. */
struct FormulaValue {
    enum class Kind { Unknown, Number, DivisionByZero, Overflow };

    Kind kind = Kind::Unknown;
    double number = 0;
};

/**
 * Evaluates the formulas of one sheet, so that programs that only show a file show the true values.
 * An empty cell is 0; a text and a cycle are unknown. Each formula is evaluated once, however long
 * the chains between them are.
 */
class Evaluator
{
public:
    /** The cells of the sheet must be sorted and stay as they are. */
    Evaluator(const BookData &book, const SheetData &sheet);

    /** `cell` is a formula of the sheet, and `formula` what it parses to. */
    FormulaValue valueOf(const Cell &cell, FormulaTokens formula);

private:
    /** A formula that waits for those it refers to. */
    struct Waiting {
        const Cell *cell;
        FormulaTokens formula;
    };

    bool pushOpenCells(std::vector<Waiting> &waiting) const;
    FormulaValue evaluate(const FormulaTokens &formula) const;
    FormulaValue cellValue(const CellReference &reference) const;

    const BookData &book;
    const SheetData &sheet;
    std::unordered_map<const Cell *, FormulaValue> values; // Unknown while they wait
};

} // namespace workbook
