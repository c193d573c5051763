#pragma once

#include "workbook/model/model.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

/**
 * The fonts and formats of a book with equal ones made one, in the order in which they first came.
 * The default font and the default format are 0 in both lists.
 */
class StyleTable
{
public:
    explicit StyleTable(const BookData &book);

    [[nodiscard]] const std::vector<FontData> &fonts() const { return distinctFonts; }

    /** Their `font` is an index of fonts(). */
    [[nodiscard]] const std::vector<FormatData> &formats() const { return distinctFormats; }

    /** The place in formats() of a format of the model. */
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
