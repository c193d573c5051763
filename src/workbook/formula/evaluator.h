#pragma once

#include "workbook/formula/formula.h"
#include "workbook/model/cellstore.h"

#include <unordered_map>
#include <vector>

namespace workbook
{

struct BookData;
struct SheetData;

/** What a formula amounts to; Unknown where this engine cannot tell. */
struct FormulaValue {
    enum class Kind { Unknown, Number, DivisionByZero, Overflow };

    Kind kind = Kind::Unknown;
    double number = 0;
};

/**
 * Reckons the formulas of one sheet, so that programs that only show a file show the true values.
 * It knows numbers, cells of the sheet (an empty one is 0, a text is unknown), the four
 * operations, signs, percent and parentheses; cycles are unknown. Each formula is reckoned once,
 * however long the chains between them are.
 */
class Evaluator
{
public:
    /** The cells of the sheet must be sorted and stay as they are. */
    Evaluator(const BookData &book, const SheetData &sheet);

    /** `cell` is a formula of the sheet. */
    FormulaValue valueOf(const Cell &cell);

private:
    struct Progress {
        bool done = false;
        FormulaValue value;
    };

    bool openCells(const FormulaTokens &formula, std::vector<const Cell *> &waiting) const;
    FormulaValue reckon(const FormulaTokens &formula) const;
    FormulaValue cellValue(const CellReference &reference) const;

    const BookData &book;
    const SheetData &sheet;
    std::unordered_map<const Cell *, Progress> progress;
};

} // namespace workbook
