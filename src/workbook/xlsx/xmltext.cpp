#include "workbook/xlsx/xmltext.h"

#include "workbook/model/text.h"
#include "workbook/xlsx/zipwriter.h"

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

/** What stands for the special ASCII character that `rest` begins with. */
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
    case u'\r': // a parser would make it a line feed
        return "_x000D_";
    case u'\n':
        return "\n";
    case u'\t':
        return "\t";
    default:
        return looksEscaped(rest) ? "_x005F_" : "_";
    }
}

/** The length of what `text` begins with, up to where `isOne` changes. */
template <class Predicate>
std::size_t runLength(std::u16string_view text, Predicate isOne)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isOne);
    return static_cast<std::size_t>(end - text.begin());
}

} // namespace

XmlText &XmlText::operator<<(std::u16string_view text)
{
    while (!text.empty()) {
        const std::size_t plain = runLength(text, isPlain);
        std::copy_n(text.begin(), plain, buffer.room(plain));
        buffer.grow(plain);
        text.remove_prefix(plain);
        const std::size_t wide = runLength(text, [](char16_t unit) { return unit >= 0x80; });
        if (wide > 0) {
            std::string utf8;
            appendUtf8(utf8, text.substr(0, wide));
            *this << std::string_view(utf8);
            text.remove_prefix(wide);
        } else if (!text.empty()) {
            *this << replacement(text);
            text.remove_prefix(1);
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
    return digits(number);
}

void flushChunk(XmlText &xml, ZipWriter &zip)
{
    constexpr std::size_t chunkBytes = 0x10000;
    if (xml.size() < chunkBytes)
        return;
    zip.append(xml.view());
    xml.clear();
}

} // namespace workbook
