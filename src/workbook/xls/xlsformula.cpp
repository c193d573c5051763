#include "workbook/xls/xlsformula.h"

#include "workbook/writing/buffer.h"
#include "workbook/xls/xlslimits.h"

#include <cmath>

namespace workbook
{

namespace
{

constexpr std::size_t maxBytes = 1800;

// Token codes, indexed by Operator. Integers up to 65,535 have a separate code.
constexpr unsigned codes[] = {0x1F, 0x44, 0x15, 0x12, 0x13, 0x05, 0x06, 0x03, 0x04};
constexpr unsigned integerCode = 0x1E;

unsigned codeOf(Operator op)
{
    return codes[static_cast<std::size_t>(op)];
}

void number(double value, Buffer &out)
{
    constexpr double maxInteger = 65535;
    if (value <= maxInteger && std::trunc(value) == value)
        out.u8(integerCode).u16(static_cast<unsigned>(value));
    else
        out.u8(codeOf(Operator::Number)).f64(value);
}

void cell(const CellReference &cell, Buffer &out)
{
    constexpr unsigned relativeColumn = 0x4000;
    constexpr unsigned relativeRow = 0x8000;
    out.u8(codeOf(Operator::Cell)).u16(static_cast<unsigned>(cell.row));
    out.u16(static_cast<unsigned>(cell.column) | (cell.fixedColumn ? 0 : relativeColumn) |
            (cell.fixedRow ? 0 : relativeRow));
}

} // namespace

std::optional<std::string> compileXlsFormula(const FormulaTokens &formula)
{
    Buffer out;
    for (const FormulaToken &token : formula) {
        if (token.op == Operator::Cell &&
            (token.cell.row >= xlsRows || token.cell.column >= xlsColumns))
            return std::nullopt;
        if (token.op == Operator::Number)
            number(token.number, out);
        else if (token.op == Operator::Cell)
            cell(token.cell, out);
        else
            out.u8(codeOf(token.op));
    }
    if (out.size() > maxBytes)
        return std::nullopt;
    return std::string(out.view());
}

} // namespace workbook
