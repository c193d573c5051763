#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/** Text inside the engine is UTF-16 without lone surrogates: the unit that both formats count. */
namespace workbook
{

/**
 * Reads text that crossed the interface into `units`, lone surrogates as U+FFFD. False when `text`
 * is null or needs more than `maxUnits` units; it is never read further than that.
 */
bool readText(const wchar_t *text, std::size_t maxUnits, std::u16string &units);

/** True when XML can hold the text: nothing below U+0020 but tab, line feed and carriage return,
 * and neither U+FFFE nor U+FFFF. */
bool isXmlText(std::u16string_view text);

/** True when XML can hold the text, and it has neither tab nor line break. */
bool isPlainLine(std::u16string_view text);

/** The first of the two units of a character beyond 16 bits. */
constexpr bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

void appendUtf8(std::string &out, std::u16string_view text);

/**
 * Text with case taken away, to compare names. Covers the Latin, Greek and Cyrillic letters of
 * European languages; other letters are equal only to themselves.
 */
std::u16string foldCase(std::u16string_view text);

} // namespace workbook
