#pragma once

#include "workbook/model/model.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

/**
 * The distinct fonts and formats of a book, in the order of their first occurrence. Index 0 is the
 * default font and the default format.
 */
class StyleTable
{
public:
    explicit StyleTable(const BookData &book);

    [[nodiscard]] const std::vector<FontData> &fonts() const { return distinctFonts; }

    /** Returns the formats. Their `font` is an index into fonts(). */
    [[nodiscard]] const std::vector<FormatData> &formats() const { return distinctFormats; }

    /** Converts the index of a format in BookData::formats to its index in formats(). */
    [[nodiscard]] std::size_t indexOf(std::uint32_t modelFormat) const
    {
        return formatIndexes[modelFormat];
    }

private:
    std::vector<FontData> distinctFonts;
    std::vector<FormatData> distinctFormats;
    std::vector<std::size_t> formatIndexes;
};

} // namespace workbook
