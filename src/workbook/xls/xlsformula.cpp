#include "workbook/xls/xlsformula.h"

#include "workbook/formula/formula.h"
#include "workbook/writing/bytes.h"
#include "workbook/xls/recordwriter.h"
#include "workbook/xls/xlslimits.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace workbook
{

namespace
{

constexpr std::size_t maxTextUnits = 255;
constexpr std::size_t maxBytes = 1800;

enum Token : unsigned {
    TokenText = 0x17,
    TokenControl = 0x19,
    TokenInteger = 0x1E,
    TokenNumber = 0x1F,
    TokenCells = 0x24,     // a cell as such
    TokenRange = 0x25,     // a range as such
    TokenFunction = 0x41,  // fixed number of operands, gives a value
    TokenCall = 0x42,      // variable number of operands, gives a value
    TokenCellValue = 0x44, // the value of a cell
};

struct PlainToken {
    Operator op;
    unsigned token;
};

constexpr PlainToken plainTokens[] = {{Operator::Add, 0x03},      {Operator::Subtract, 0x04},
                                      {Operator::Multiply, 0x05}, {Operator::Divide, 0x06},
                                      {Operator::Power, 0x07},    {Operator::Join, 0x08},
                                      {Operator::Less, 0x09},     {Operator::LessOrEqual, 0x0A},
                                      {Operator::Equal, 0x0B},    {Operator::GreaterOrEqual, 0x0C},
                                      {Operator::Greater, 0x0D},  {Operator::NotEqual, 0x0E},
                                      {Operator::Plus, 0x12},     {Operator::Negate, 0x13},
                                      {Operator::Percent, 0x14},  {Operator::Group, 0x15}};

struct FunctionCode {
    Function function;
    unsigned number;
    bool fixedOperands;
};

constexpr FunctionCode functionCodes[] = {
    {Function::Count, 0, false},   {Function::If, 1, false},   {Function::Sum, 4, false},
    {Function::Average, 5, false}, {Function::Min, 6, false},  {Function::Max, 7, false},
    {Function::Abs, 24, true},     {Function::Round, 27, true}};

constexpr unsigned controlIf = 0x02;   // to behind the branch where the condition is false
constexpr unsigned controlSkip = 0x08; // to behind the call
constexpr std::size_t controlBytes = 4;

class Compiler
{
public:
    std::optional<std::string> compile(const FormulaTokens &formula)
    {
        for (const FormulaToken &token : formula)
            add(token);
        if (failed || out.size() > maxBytes)
            return std::nullopt;
        return out;
    }

private:
    /** An IF that is open: where the jumps stand that are filled in later. */
    struct OpenIf {
        std::size_t condition;
        std::vector<std::size_t> skips;
    };

    void add(const FormulaToken &token)
    {
        switch (token.op) {
        case Operator::Number:
            number(token.number);
            break;
        case Operator::Text:
            text(token.text);
            break;
        case Operator::Cell:
            appendU8(out, token.wholeCells ? TokenCells : TokenCellValue);
            check(token.first);
            appendU16(out, static_cast<unsigned>(token.first.row));
            column(token.first);
            break;
        case Operator::Range:
            range(token);
            break;
        case Operator::Call:
            call(token);
            break;
        case Operator::Then:
            openIfs.push_back({out.size(), {}});
            control(controlIf);
            break;
        case Operator::Else:
            branchEnds();
            break;
        default:
            for (const PlainToken &plain : plainTokens) {
                if (plain.op == token.op)
                    appendU8(out, plain.token);
            }
        }
    }

    void number(double value)
    {
        constexpr double maxInteger = 65535;
        if (value <= maxInteger && std::trunc(value) == value) {
            appendU8(out, TokenInteger);
            appendU16(out, static_cast<unsigned>(value));
        } else {
            appendU8(out, TokenNumber);
            appendF64(out, value);
        }
    }

    void text(std::u16string_view value)
    {
        failed = failed || value.size() > maxTextUnits;
        const bool narrow = isNarrow(value);
        appendU8(out, TokenText);
        appendU8(out, static_cast<unsigned>(value.size()));
        appendU8(out, narrow ? 0 : 1);
        for (const char16_t unit : value) {
            if (narrow)
                appendU8(out, unit);
            else
                appendU16(out, unit);
        }
    }

    void check(const CellReference &cell)
    {
        failed = failed || cell.row >= xlsRows || cell.column >= xlsColumns;
    }

    void column(const CellReference &cell)
    {
        appendU16(out, static_cast<unsigned>(cell.column) | (cell.fixedColumn ? 0 : 0x4000U) |
                           (cell.fixedRow ? 0 : 0x8000U));
    }

    void range(const FormulaToken &token)
    {
        check(token.first);
        check(token.last);
        appendU8(out, TokenRange);
        appendU16(out, static_cast<unsigned>(token.first.row));
        appendU16(out, static_cast<unsigned>(token.last.row));
        column(token.first);
        column(token.last);
    }

    void call(const FormulaToken &token)
    {
        const FunctionCode &code = *std::find_if(
            std::begin(functionCodes), std::end(functionCodes),
            [&](const FunctionCode &known) { return known.function == token.function; });
        appendU8(out, code.fixedOperands ? TokenFunction : TokenCall);
        if (!code.fixedOperands)
            appendU8(out, token.operands);
        appendU16(out, code.number);
        if (token.function != Function::If)
            return;
        // The format counts these jumps one short.
        for (const std::size_t skip : openIfs.back().skips)
            setJump(skip, out.size() - 1);
        openIfs.pop_back();
    }

    void branchEnds()
    {
        OpenIf &open = openIfs.back();
        open.skips.push_back(out.size());
        control(controlSkip);
        if (open.skips.size() == 1)
            setJump(open.condition, out.size());
    }

    void control(unsigned kind)
    {
        appendU8(out, TokenControl);
        appendU8(out, kind);
        appendU16(out, 0);
    }

    /** Lets the control token at `from` jump to `to`; distances count from its end. */
    void setJump(std::size_t from, std::size_t to)
    {
        std::string distance;
        appendU16(distance, static_cast<unsigned>(to - from - controlBytes));
        out.replace(from + 2, distance.size(), distance);
    }

    std::string out;
    std::vector<OpenIf> openIfs;
    bool failed = false;
};

} // namespace

std::optional<std::string> compileXlsFormula(std::u16string_view text)
{
    const std::optional<FormulaTokens> formula = parseFormula(text);
    return formula ? Compiler().compile(*formula) : std::nullopt;
}

} // namespace workbook
