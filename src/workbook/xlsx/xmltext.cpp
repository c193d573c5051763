#include "workbook/xlsx/xmltext.h"

#include "workbook/model/text.h"
#include "workbook/xlsx/zipwriter.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace workbook
{

namespace
{

constexpr bool isHexDigit(char16_t unit)
{
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') ||
           (unit >= u'a' && unit <= u'f');
}

/**
 * Returns whether `rest` begins with something like "_x000D_", which spreadsheet programs would
 * read as an escaped character.
 */
bool looksEscaped(std::u16string_view rest)
{
    return rest.size() >= 7 && rest[0] == u'_' && rest[1] == u'x' && rest[6] == u'_' &&
           std::all_of(rest.begin() + 2, rest.begin() + 6, isHexDigit);
}

constexpr bool isPlain(char16_t unit)
{
    return unit >= 0x20 && unit < 0x80 && unit != u'&' && unit != u'<' && unit != u'>' &&
           unit != u'"' && unit != u'_';
}

/** Returns the replacement for the special ASCII character that `rest` begins with. */
std::string_view replacement(std::u16string_view rest)
{
    switch (rest.front()) {
    case u'&':
        return "&amp;";
    case u'<':
        return "&lt;";
    case u'>':
        return "&gt;";
    case u'"':
        return "&quot;";
    case u'\r': // a parser would convert it to a line feed
        return "_x000D_";
    case u'\n':
        return "\n";
    case u'\t':
        return "\t";
    default:
        return looksEscaped(rest) ? "_x005F_" : "_";
    }
}

} // namespace

XmlText &XmlText::operator<<(std::u16string_view text)
{
    constexpr std::size_t longest = 7; // bytes per unit: "_x000D_"
    char *const begin = buffer.room(longest * text.size());
    char *out = begin;
    while (!text.empty()) {
        if (isPlain(text.front())) {
            *out++ = static_cast<char>(text.front());
            text.remove_prefix(1);
        } else if (text.front() >= 0x80) {
            out = putUtf8(takePoint(text), out);
        } else {
            const std::string_view escaped = replacement(text);
            out = std::copy(escaped.begin(), escaped.end(), out);
            text.remove_prefix(1);
        }
    }
    buffer.grow(static_cast<std::size_t>(out - begin));
    return *this;
}

XmlText &XmlText::operator<<(double number)
{
    // Most numbers are integers or have at most two decimals. Convert them as integers: this is
    // faster than to_chars() of a double, which would also write 100000 as "1e+05".
    constexpr double wholeLimit = 1e15;
    constexpr double hundredthsLimit = 1e13;
    if (std::fabs(number) < wholeLimit && std::trunc(number) == number)
        return *this << static_cast<long long>(number);
    const double hundredths = std::round(number * 100);
    if (std::fabs(number) < hundredthsLimit && hundredths / 100 == number)
        return appendHundredths(static_cast<long long>(hundredths));
    return digits(number);
}

XmlText &XmlText::appendHundredths(long long hundredths)
{
    const auto whole = hundredths / 100;
    const auto rest = std::abs(hundredths % 100);
    if (hundredths < 0 && whole == 0)
        *this << "-";
    *this << whole << (rest < 10 ? ".0" : ".");
    return rest % 10 == 0 ? *this << rest / 10 : *this << rest;
}

void flushChunk(XmlText &xml, ZipWriter &zip)
{
    if (xml.size() < chunkBytes)
        return;
    zip.append(xml.view());
    xml.clear();
}

} // namespace workbook
