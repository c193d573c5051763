#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

struct BookData;

/**
 * The distinct texts in the cells of a book. The most frequent texts come first, because a file
 * stores a text's number in each cell that contains the text, and small numbers make small files.
 * Equally frequent texts are in the order of the first cells that contain them. Texts of
 * overwritten cells are left out. The order in which cells were written has no effect.
 */
class SharedStrings
{
public:
    enum class Empty { Kept, LeftOut };

    /** The cells of `book` must be sorted. `empty` says whether to keep the empty text. */
    SharedStrings(const BookData &book, Empty empty);

    /** Returns the texts in the order of the file, as indexes in the book's string table. */
    [[nodiscard]] const std::vector<std::uint32_t> &used() const { return order; }

    /**
     * Converts the index of a text in the string table to its position in used(). At least one cell
     * must contain the text.
     */
    [[nodiscard]] std::uint32_t numberOf(std::uint32_t index) const { return numbers[index]; }

    /** Returns the number of cells that contain a text of used(). */
    [[nodiscard]] std::size_t references() const { return cellCount; }

private:
    std::vector<std::uint32_t> order;
    std::vector<std::uint32_t> numbers;
    std::size_t cellCount = 0;
};

} // namespace workbook
