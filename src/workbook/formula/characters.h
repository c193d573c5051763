#pragma once

#include <algorithm>
#include <string_view>

/** Functions for the characters of formulas. They do not depend on the locale. */
namespace workbook
{

constexpr bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

constexpr bool isLetter(char16_t unit)
{
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

/** Returns the capital of `unit`, which must be a letter. */
constexpr char upper(char16_t unit)
{
    return static_cast<char>(unit >= u'a' ? unit - u'a' + u'A' : unit);
}

/** Removes and returns the longest prefix of `text` whose characters satisfy `predicate`. */
template <class Predicate>
std::u16string_view takeWhile(std::u16string_view &text, Predicate predicate)
{
    const auto end = std::find_if_not(text.begin(), text.end(), predicate);
    const std::u16string_view taken = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(taken.size());
    return taken;
}

} // namespace workbook
