#include "workbook/model/text.h"

#include <algorithm>
#include <cwchar>

namespace workbook
{

namespace
{

constexpr char32_t replacement = 0xFFFD;

constexpr bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr char32_t joined(char16_t high, char16_t low)
{
    return 0x10000U + ((high - 0xD800U) << 10U) + (low - 0xDC00U);
}

void appendUtf16(std::u16string &units, char32_t point)
{
    if (point < 0x10000) {
        units += static_cast<char16_t>(point);
        return;
    }
    units += static_cast<char16_t>(0xD800U + ((point - 0x10000U) >> 10U));
    units += static_cast<char16_t>(0xDC00U + (point & 0x3FFU));
}

void appendPoint(std::string &out, char32_t point)
{
    const auto tail = [&out](char32_t bits) {
        out += static_cast<char>(0x80U | (bits & 0x3FU));
    };
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0U | (point >> 6U));
        tail(point);
    } else if (point < 0x10000) {
        out += static_cast<char>(0xE0U | (point >> 12U));
        tail(point >> 6U);
        tail(point);
    } else {
        out += static_cast<char>(0xF0U | (point >> 18U));
        tail(point >> 12U);
        tail(point >> 6U);
        tail(point);
    }
}

/** Characters beyond 16 bits become pairs; halves of pairs that stand alone are replaced. */
void appendRepaired(std::u16string &units, std::wstring_view wide)
{
    for (std::size_t i = 0; i < wide.size(); ++i) {
        auto point = static_cast<char32_t>(wide[i]);
        const auto next = static_cast<char32_t>(i + 1 < wide.size() ? wide[i + 1] : 0);
        if (isHighSurrogate(point) && isLowSurrogate(next)) {
            units += static_cast<char16_t>(point);
            units += static_cast<char16_t>(next);
            ++i;
            continue;
        }
        if (isHighSurrogate(point) || isLowSurrogate(point) || point > 0x10FFFF)
            point = replacement;
        appendUtf16(units, point);
    }
}

// The pairs of the Latin extensions stand side by side, capital first; where it is the even or the
// odd code changes from block to block.
char16_t foldLatinExtended(char16_t unit)
{
    const bool capitalIsOdd = (unit >= 0x139 && unit <= 0x148) || (unit >= 0x179 && unit <= 0x17E);
    if (unit == 0x178) // Y with diaeresis, its small letter is in Latin-1
        return 0xFF;
    if (capitalIsOdd)
        return static_cast<char16_t>(unit + (unit & 1U));
    return static_cast<char16_t>(unit | 1U);
}

char16_t fold(char16_t unit)
{
    const auto plus = [unit](unsigned step) {
        return static_cast<char16_t>(unit + step);
    };
    if (unit >= u'A' && unit <= u'Z')
        return plus(0x20);
    if (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7) // Latin-1, but for the multiplication sign
        return plus(0x20);
    if (unit >= 0x100 && unit <= 0x17E && unit != 0x138 && unit != 0x149)
        return foldLatinExtended(unit);
    if (unit >= 0x391 && unit <= 0x3A9) // Greek
        return plus(0x20);
    if (unit >= 0x410 && unit <= 0x42F) // Cyrillic
        return plus(0x20);
    if (unit >= 0x400 && unit <= 0x40F)
        return plus(0x50);
    return unit;
}

} // namespace

bool readText(const wchar_t *text, std::size_t maxUnits, std::u16string &units)
{
    units.clear();
    if (text == nullptr)
        return false;
    // Every character gives a unit at least.
    const std::size_t length = wcsnlen(text, maxUnits + 1);
    if (length > maxUnits)
        return false;
    const auto isOneUnit = [](wchar_t c) {
        const auto point = static_cast<char32_t>(c);
        return point < 0xD800 || (point > 0xDFFF && point < 0x10000);
    };
    const std::wstring_view wide(text, length);
    if (std::all_of(wide.begin(), wide.end(), isOneUnit)) {
        units.resize(length);
        std::transform(wide.begin(), wide.end(), units.begin(),
                       [](wchar_t c) { return static_cast<char16_t>(c); });
        return true;
    }
    appendRepaired(units, wide);
    return units.size() <= maxUnits;
}

bool isXmlText(std::u16string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t unit) {
        const bool control = unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r';
        return !control && unit < 0xFFFE;
    });
}

bool isPlainLine(std::u16string_view text)
{
    return isXmlText(text) && text.find_first_of(u"\t\n\r") == std::u16string_view::npos;
}

void appendUtf8(std::string &out, std::u16string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool pair = isHighSurrogate(text[i]) && i + 1 < text.size();
        appendPoint(out, pair ? joined(text[i], text[i + 1]) : text[i]);
        i += pair ? 1 : 0;
    }
}

std::u16string foldCase(std::u16string_view text)
{
    std::u16string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), fold);
    return folded;
}

} // namespace workbook
