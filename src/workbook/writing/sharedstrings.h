#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

struct BookData;

/**
 * The texts that the cells of a book use. The most frequent come first, because small numbers make
 * small files; equally frequent ones are in the order of the cells. Texts that were overwritten are
 * not among them, and the order in which cells were written does not matter.
 */
class SharedStrings
{
public:
    enum class Empty { Kept, LeftOut };

    /**
     * The cells of `book` must be sorted. `empty` says whether an empty text counts as a string.
     */
    SharedStrings(const BookData &book, Empty empty);

    /** Returns indexes of the book's string table, in the order of the file. */
    [[nodiscard]] const std::vector<std::uint32_t> &used() const { return order; }

    /**
     * Returns the number in the file of a text that a cell uses, given its index in the string
     * table.
     */
    [[nodiscard]] std::uint32_t numberOf(std::uint32_t index) const { return numbers[index]; }

    /** Returns how many cells contain text. */
    [[nodiscard]] std::size_t references() const { return cellCount; }

private:
    std::vector<std::uint32_t> order;
    std::vector<std::uint32_t> numbers;
    std::size_t cellCount = 0;
};

} // namespace workbook
