#include "workbook/formula/formula.h"

#include "workbook/formula/characters.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace workbook
{

namespace
{

constexpr int maxDepth = 64;

struct BinaryOperator {
    std::u16string_view sign;
    Operator op;
    int rank; // what binds tighter has the higher one
};

// Signs of two characters first, else their first one would be found. All group from the left,
// "^" as well: that is how spreadsheet programs do it.
constexpr BinaryOperator binaryOperators[] = {{u"<>", Operator::NotEqual, 1},
                                              {u"<=", Operator::LessOrEqual, 1},
                                              {u">=", Operator::GreaterOrEqual, 1},
                                              {u"<", Operator::Less, 1},
                                              {u">", Operator::Greater, 1},
                                              {u"=", Operator::Equal, 1},
                                              {u"&", Operator::Join, 2},
                                              {u"+", Operator::Add, 3},
                                              {u"-", Operator::Subtract, 3},
                                              {u"*", Operator::Multiply, 4},
                                              {u"/", Operator::Divide, 4},
                                              {u"^", Operator::Power, 5}};

struct FunctionRule {
    std::string_view name;
    Function function;
    unsigned minOperands;
    unsigned maxOperands;
    bool takesRanges;
};

constexpr FunctionRule functionRules[] = {
    {"SUM", Function::Sum, 1, 30, true},     {"AVERAGE", Function::Average, 1, 30, true},
    {"MIN", Function::Min, 1, 30, true},     {"MAX", Function::Max, 1, 30, true},
    {"COUNT", Function::Count, 1, 30, true}, {"IF", Function::If, 2, 3, false},
    {"ROUND", Function::Round, 2, 2, false}, {"ABS", Function::Abs, 1, 1, false}};

/** Recursive descent; tokens are appended as they are complete. False: no formula of ours. */
class Parser
{
public:
    explicit Parser(std::u16string_view text)
        : rest(text)
    {
    }

    std::optional<FormulaTokens> whole()
    {
        if (!binary(1))
            return std::nullopt;
        skipBlanks();
        const bool strayRange =
            std::any_of(formula.begin(), formula.end(), [](const FormulaToken &token) {
                return token.op == Operator::Range && !token.wholeCells;
            });
        return rest.empty() && !strayRange ? std::optional(std::move(formula)) : std::nullopt;
    }

private:
    bool put(Operator op)
    {
        formula.emplace_back().op = op;
        return true;
    }

    void skipBlanks()
    {
        while (!rest.empty() && (rest.front() == u' ' || rest.front() == u'\n'))
            rest.remove_prefix(1);
    }

    [[nodiscard]] bool isNext(char16_t unit) const { return !rest.empty() && rest.front() == unit; }

    bool takeNext(char16_t unit)
    {
        const bool found = isNext(unit);
        rest.remove_prefix(found ? 1 : 0);
        return found;
    }

    bool take(std::u16string_view sign)
    {
        skipBlanks();
        if (rest.substr(0, sign.size()) != sign)
            return false;
        rest.remove_prefix(sign.size());
        return true;
    }

    const BinaryOperator *takeOperator(int minRank)
    {
        skipBlanks();
        for (const BinaryOperator &candidate : binaryOperators) {
            if (rest.substr(0, candidate.sign.size()) != candidate.sign)
                continue;
            if (candidate.rank < minRank)
                break;
            rest.remove_prefix(candidate.sign.size());
            return &candidate;
        }
        return nullptr;
    }

    bool binary(int minRank)
    {
        if (!unary())
            return false;
        while (const BinaryOperator *found = takeOperator(minRank)) {
            if (!binary(found->rank + 1))
                return false;
            put(found->op);
        }
        return true;
    }

    /** Signs in front bind tighter than any binary operator, percent signs tighter still. */
    bool unary()
    {
        if (depth == maxDepth)
            return false;
        ++depth;
        bool parsed = false;
        if (take(u"-"))
            parsed = unary() && put(Operator::Negate);
        else if (take(u"+"))
            parsed = unary() && put(Operator::Plus);
        else
            parsed = primary();
        while (parsed && take(u"%"))
            put(Operator::Percent);
        --depth;
        return parsed;
    }

    bool primary()
    {
        if (take(u"("))
            return binary(1) && take(u")") && put(Operator::Group);
        if (take(u"\""))
            return text();
        if (isNext(u'.') || (!rest.empty() && isDigit(rest.front())))
            return number();
        const std::u16string_view before = rest;
        if (const std::optional<CellReference> first = takeReference(rest))
            return cells(*first);
        rest = before;
        return call();
    }

    bool number()
    {
        std::string digits;
        const auto collect = [&](std::u16string_view units) {
            for (const char16_t unit : units)
                digits += static_cast<char>(unit);
        };
        collect(takeWhile(rest, [](char16_t unit) { return isDigit(unit) || unit == u'.'; }));
        if (takeNext(u'E') || takeNext(u'e')) {
            digits += 'E';
            if (takeNext(u'-'))
                digits += '-';
            else
                takeNext(u'+');
            collect(takeWhile(rest, isDigit));
        }
        put(Operator::Number);
        const char *end = digits.data() + digits.size();
        const auto read = std::from_chars(digits.data(), end, formula.back().number);
        return read.ec == std::errc() && read.ptr == end;
    }

    /** From behind the opening quote; a quote inside stands twice. */
    bool text()
    {
        put(Operator::Text);
        std::u16string &value = formula.back().text;
        while (true) {
            value += takeWhile(rest, [](char16_t unit) { return unit != u'"'; });
            if (!takeNext(u'"'))
                return false;
            if (!takeNext(u'"'))
                return true;
            value += u'"';
        }
    }

    bool cells(const CellReference &first)
    {
        put(Operator::Cell);
        formula.back().first = first;
        if (!takeNext(u':'))
            return true;
        const std::optional<CellReference> last = takeReference(rest);
        if (!last)
            return false;
        formula.back().op = Operator::Range;
        setCorners(formula.back(), first, *last);
        return true;
    }

    /** Files name the upper left corner first, whatever the formula does. */
    static void setCorners(FormulaToken &token, CellReference a, CellReference b)
    {
        if (a.row > b.row) {
            std::swap(a.row, b.row);
            std::swap(a.fixedRow, b.fixedRow);
        }
        if (a.column > b.column) {
            std::swap(a.column, b.column);
            std::swap(a.fixedColumn, b.fixedColumn);
        }
        token.first = a;
        token.last = b;
    }

    bool call()
    {
        std::string name;
        for (const char16_t letter : takeWhile(rest, isLetter))
            name += upper(letter);
        const auto rule =
            std::find_if(std::begin(functionRules), std::end(functionRules),
                         [&](const FunctionRule &known) { return known.name == name; });
        if (rule == std::end(functionRules) || !takeNext(u'('))
            return false;
        unsigned operands = 0;
        do {
            if (operands == rule->maxOperands || !operand(*rule))
                return false;
            if (rule->function == Function::If)
                put(operands == 0 ? Operator::Then : Operator::Else);
            ++operands;
        } while (take(u","));
        if (operands < rule->minOperands || !take(u")"))
            return false;
        put(Operator::Call);
        formula.back().function = rule->function;
        formula.back().operands = operands;
        return true;
    }

    bool operand(const FunctionRule &rule)
    {
        const std::size_t before = formula.size();
        if (!binary(1))
            return false;
        FormulaToken &last = formula.back();
        if (rule.takesRanges && formula.size() == before + 1)
            last.wholeCells = last.op == Operator::Cell || last.op == Operator::Range;
        return true;
    }

    std::u16string_view rest;
    FormulaTokens formula;
    int depth = 0;
};

} // namespace

std::optional<FormulaTokens> parseFormula(std::u16string_view text)
{
    return Parser(text).whole();
}

} // namespace workbook
