#pragma once

#include "workbook/writing/buffer.h"

#include <charconv>
#include <string_view>
#include <type_traits>

namespace workbook
{

class ZipWriter;

/** The beginning of every XML part. */
constexpr std::string_view xmlDeclaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

/** The XML namespace of sheets, styles and strings. */
constexpr std::string_view sheetNamespace =
    "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

/**
 * Collects XML. Narrow strings are markup and are appended unchanged. UTF-16 strings are text and
 * are escaped both for content and for attributes. In attributes, texts must not contain tabs or
 * line feeds, which parsers convert to blanks. Does not depend on the locale.
 */
class XmlText
{
public:
    XmlText &operator<<(std::string_view markup)
    {
        buffer.append(markup);
        return *this;
    }

    XmlText &operator<<(const char *markup) { return *this << std::string_view(markup); }

    XmlText &operator<<(std::u16string_view text);

    /** Appends a finite number as a short text that can be converted back without loss. */
    XmlText &operator<<(double number);

    // Deleted, because these types would be written as numbers.
    XmlText &operator<<(char) = delete;
    XmlText &operator<<(char16_t) = delete;
    XmlText &operator<<(bool) = delete;

    template <class Integer, class = std::enable_if_t<std::is_integral_v<Integer>>>
    XmlText &operator<<(Integer number)
    {
        return digits(number);
    }

    [[nodiscard]] std::string_view view() const { return buffer.view(); }
    [[nodiscard]] std::size_t size() const { return buffer.size(); }
    void clear() { buffer.clear(); }

private:
    XmlText &appendHundredths(long long hundredths);

    template <class Number>
    XmlText &digits(Number number)
    {
        constexpr std::size_t longest = 32;
        char *const begin = buffer.room(longest);
        const auto end = std::to_chars(begin, begin + longest, number).ptr;
        buffer.grow(static_cast<std::size_t>(end - begin));
        return *this;
    }

    Buffer buffer;
};

/** How many bytes of XML to collect before moving them into the archive. */
constexpr std::size_t chunkBytes = 0x10000;

/** Moves the bytes of `xml` into the archive's open entry if there are at least chunkBytes. */
void flushChunk(XmlText &xml, ZipWriter &zip);

} // namespace workbook
