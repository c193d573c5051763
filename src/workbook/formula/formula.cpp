#include "workbook/formula/formula.h"

#include "workbook/formula/characters.h"

#include <charconv>
#include <string>
#include <utility>

namespace workbook
{

namespace
{

constexpr int maxDepth = 64;

/**
 * A recursive-descent parser that appends tokens in postfix order. Each parsing function returns
 * false if the text is not a formula that parseFormula() supports.
 */
class Parser
{
public:
    explicit Parser(std::u16string_view text)
        : rest(text)
    {
    }

    std::optional<FormulaTokens> whole()
    {
        if (!sum())
            return std::nullopt;
        skipBlanks();
        return rest.empty() ? std::optional(std::move(formula)) : std::nullopt;
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

    bool takeNext(char16_t unit)
    {
        const bool found = !rest.empty() && rest.front() == unit;
        rest.remove_prefix(found ? 1 : 0);
        return found;
    }

    bool take(char16_t sign)
    {
        skipBlanks();
        return takeNext(sign);
    }

    bool sum()
    {
        bool parsed = product();
        while (parsed) {
            if (take(u'+'))
                parsed = product() && put(Operator::Add);
            else if (take(u'-'))
                parsed = product() && put(Operator::Subtract);
            else
                break;
        }
        return parsed;
    }

    bool product()
    {
        bool parsed = factor();
        while (parsed) {
            if (take(u'*'))
                parsed = factor() && put(Operator::Multiply);
            else if (take(u'/'))
                parsed = factor() && put(Operator::Divide);
            else
                break;
        }
        return parsed;
    }

    bool factor()
    {
        if (depth == maxDepth)
            return false;
        ++depth;
        bool parsed = false;
        if (take(u'-'))
            parsed = factor() && put(Operator::Negate);
        else if (take(u'+'))
            parsed = factor() && put(Operator::Plus);
        else if (take(u'('))
            parsed = sum() && take(u')') && put(Operator::Group);
        else
            parsed = number() || cell();
        --depth;
        return parsed;
    }

    bool number()
    {
        std::string digits;
        const auto collect = [&](std::u16string_view units) {
            for (const char16_t unit : units)
                digits += static_cast<char>(unit);
        };
        collect(takeWhile(rest, [](char16_t unit) { return isDigit(unit) || unit == u'.'; }));
        if (digits.empty())
            return false;
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

    bool cell()
    {
        const std::optional<CellReference> reference = takeReference(rest);
        if (!reference)
            return false;
        put(Operator::Cell);
        formula.back().cell = *reference;
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
