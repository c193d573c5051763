#include "workbook/model/text.h"

#include <algorithm>
#include <cwchar>

namespace workbook
{

namespace
{

constexpr bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr char32_t joined(char16_t high, char16_t low)
{
    return 0x10000U + ((high - 0xD800U) << 10U) + (low - 0xDC00U);
}

/** Returns whether a character is in the range U+0020 to U+D7FF, as most characters are. */
constexpr bool isUsual(char32_t point)
{
    return point - 0x20U < 0xD800U - 0x20U;
}

constexpr bool fitsXml(char32_t point)
{
    const bool blank = point == U'\t' || point == U'\n' || point == U'\r';
    return isUsual(point) || blank || (point >= 0xE000 && point < 0xFFFE) ||
           (point >= 0x10000 && point <= 0x10FFFF);
}

/**
 * Returns the next character and moves `text` past it. If the next two wide characters are a
 * surrogate pair, returns the character that they encode.
 */
char32_t takePoint(const wchar_t *&text)
{
    const auto point = static_cast<char32_t>(*text++);
    const auto next = static_cast<char32_t>(*text);
    if (!isHighSurrogate(point) || !isLowSurrogate(next))
        return point;
    ++text;
    return joined(static_cast<char16_t>(point), static_cast<char16_t>(next));
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

/**
 * Returns the small letter for a letter of Latin Extended-A. In this block, the code of a small
 * letter is nearly always one greater than the code of its capital. Capitals have odd codes in two
 * ranges and even codes elsewhere.
 */
char16_t foldLatinExtended(char16_t unit)
{
    const bool capitalIsOdd = (unit >= 0x139 && unit <= 0x148) || (unit >= 0x179 && unit <= 0x17E);
    if (unit == 0x178) // Y with diaeresis, whose small letter is in Latin-1
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
    if (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7) // Latin-1, except for the multiplication sign
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
    units.resize(wcsnlen(text, maxUnits + 1));
    std::size_t usual = 0;
    for (; usual < units.size() && isUsual(static_cast<char32_t>(text[usual])); ++usual)
        units[usual] = static_cast<char16_t>(text[usual]);
    units.resize(usual);
    for (const wchar_t *rest = text + usual; *rest != L'\0' && units.size() <= maxUnits;) {
        const char32_t point = takePoint(rest);
        if (fitsXml(point))
            appendUtf16(units, point);
    }
    return units.size() <= maxUnits;
}

std::string utf8Path(const wchar_t *path)
{
    constexpr char32_t replacement = 0xFFFD;
    std::string bytes;
    while (path != nullptr && *path != L'\0') {
        const char32_t point = takePoint(path);
        char encoded[maxUtf8Bytes];
        const bool control = point < 0x20; // allowed in file names
        char *const end = putUtf8(fitsXml(point) || control ? point : replacement, encoded);
        bytes.append(encoded, static_cast<std::size_t>(end - encoded));
    }
    return bytes;
}

bool isPlainLine(std::u16string_view text)
{
    return text.find_first_of(u"\t\n\r") == std::u16string_view::npos;
}

char *putUtf8(char32_t point, char *out)
{
    const auto tail = [point](unsigned shift) {
        return static_cast<char>(0x80U | ((point >> shift) & 0x3FU));
    };
    if (point < 0x80) {
        *out++ = static_cast<char>(point);
    } else if (point < 0x800) {
        *out++ = static_cast<char>(0xC0U | (point >> 6U));
        *out++ = tail(0);
    } else if (point < 0x10000) {
        *out++ = static_cast<char>(0xE0U | (point >> 12U));
        *out++ = tail(6);
        *out++ = tail(0);
    } else {
        *out++ = static_cast<char>(0xF0U | (point >> 18U));
        *out++ = tail(12);
        *out++ = tail(6);
        *out++ = tail(0);
    }
    return out;
}

char32_t takePoint(std::u16string_view &text)
{
    const bool pair = isHighSurrogate(text[0]);
    const char32_t point = pair ? joined(text[0], text[1]) : text[0];
    text.remove_prefix(pair ? 2 : 1);
    return point;
}

std::u16string foldCase(std::u16string_view text)
{
    std::u16string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), fold);
    return folded;
}

} // namespace workbook
