#include "workbook/xlsx/xmltext.h"

#include "workbook/text.h"

#include <algorithm>
#include <cmath>

namespace workbook
{

namespace
{

constexpr bool isHexDigit(char16_t unit)
{
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') ||
           (unit >= u'a' && unit <= u'f');
}

/** Spreadsheet programs read "_x000D_" as a character; what only looks so must not become one. */
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

void appendSpecial(std::string &out, std::u16string_view rest)
{
    switch (rest.front()) {
    case u'&':
        out += "&amp;";
        break;
    case u'<':
        out += "&lt;";
        break;
    case u'>':
        out += "&gt;";
        break;
    case u'"':
        out += "&quot;";
        break;
    case u'\r': // a parser would make it a line feed
        out += "_x000D_";
        break;
    case u'_':
        out += looksEscaped(rest) ? "_x005F_" : "_";
        break;
    default:
        out += static_cast<char>(rest.front()); // tab, line feed
    }
}

} // namespace

XmlText &XmlText::operator<<(std::u16string_view text)
{
    while (!text.empty()) {
        if (isPlain(text.front())) {
            out += static_cast<char>(text.front());
            text.remove_prefix(1);
        } else if (text.front() < 0x80) {
            appendSpecial(out, text);
            text.remove_prefix(1);
        } else {
            const auto end =
                std::find_if(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
            const auto length = static_cast<std::size_t>(end - text.begin());
            appendUtf8(out, text.substr(0, length));
            text.remove_prefix(length);
        }
    }
    return *this;
}

XmlText &XmlText::operator<<(double number)
{
    // Whole numbers are frequent, and to_chars would write 100000 as "1e+05".
    constexpr double wholeLimit = 1e15;
    if (std::fabs(number) < wholeLimit && std::trunc(number) == number)
        return *this << static_cast<long long>(number);
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    out.append(digits, static_cast<std::size_t>(end - digits));
    return *this;
}

} // namespace workbook
