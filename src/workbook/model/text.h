#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/**
 * Text inside the engine is UTF-16, the unit that both formats count, without lone surrogates and
 * all else that XML cannot hold.
 */
namespace workbook
{

/**
 * Reads text that crossed the interface into `units`. Left out is what XML cannot hold: characters
 * below U+0020 other than tab, line feed and carriage return, lone surrogates, U+FFFE and U+FFFF.
 * False when `text` is null or more than `maxUnits` units are left.
 */
bool readText(const wchar_t *text, std::size_t maxUnits, std::u16string &units);

/** The path as the system takes it; empty for null. What is not a character becomes U+FFFD. */
std::string utf8Path(const wchar_t *path);

/** True when the text has neither tab nor line break. */
bool isPlainLine(std::u16string_view text);

/** The first of the two units of a character beyond 16 bits. */
constexpr bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr std::size_t maxUtf8Bytes = 4;

/** Writes a character of at most maxUtf8Bytes; returns where the next one goes. */
char *putUtf8(char32_t point, char *out);

/** Takes the first character off `text`, which must not be empty. */
char32_t takePoint(std::u16string_view &text);

/**
 * Text with case taken away, to compare names. Covers the Latin, Greek and Cyrillic letters of
 * European languages; other letters are equal only to themselves.
 */
std::u16string foldCase(std::u16string_view text);

} // namespace workbook
