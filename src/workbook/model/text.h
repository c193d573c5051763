#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/**
 * Text inside the engine is UTF-16, because both file formats limit the number of UTF-16 units in a
 * text. It has no lone surrogates and no other characters that XML cannot represent.
 */
namespace workbook
{

/**
 * Converts `text` to UTF-16 and stores the result in `units`. Removes the characters that XML
 * cannot represent: lone surrogates, U+FFFE, U+FFFF, and characters below U+0020 except tab, line
 * feed and carriage return. Returns false if `text` is null or the result is longer than
 * `maxUnits`.
 */
bool readText(const wchar_t *text, std::size_t maxUnits, std::u16string &units);

/**
 * Returns the path in UTF-8, or an empty string if `path` is null. Lone surrogates, U+FFFE, U+FFFF
 * and values above U+10FFFF become U+FFFD.
 */
std::string utf8Path(const wchar_t *path);

/** Returns whether `text` contains neither tabs nor line breaks. */
bool isPlainLine(std::u16string_view text);

/** Returns whether `unit` is the first of the two units of a character beyond U+FFFF. */
constexpr bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr std::size_t maxUtf8Bytes = 4;

/**
 * Writes a character in UTF-8 to `out`: at most maxUtf8Bytes bytes. Returns the position after the
 * last byte.
 */
char *putUtf8(char32_t point, char *out);

/** Removes and returns the first character of `text`, which must not be empty. */
char32_t takePoint(std::u16string_view &text);

/**
 * Returns the text in lower case, for comparing names. Covers Latin-1, Latin Extended-A and the
 * basic Greek and Cyrillic letters; other letters are unchanged.
 */
std::u16string foldCase(std::u16string_view text);

} // namespace workbook
