#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

struct BookData;

/**
 * The texts that the cells of a book really use, the most frequent first, since short numbers make
 * small files; equally frequent ones in the order of the cells. Files carry none that was
 * overwritten, and do not depend on the order of writing.
 */
class SharedStrings
{
public:
    enum class Empty { Kept, LeftOut };

    /** The cells of `book` must be sorted. `empty` says whether empty text is a string. */
    SharedStrings(const BookData &book, Empty empty);

    /** Indexes of the book's string table, in the order of the file. */
    [[nodiscard]] const std::vector<std::uint32_t> &used() const { return order; }

    /** The number in the file of a text of the string table that a cell uses. */
    [[nodiscard]] std::uint32_t numberOf(std::uint32_t index) const { return numbers[index]; }

    /** How many cells hold text. */
    [[nodiscard]] std::size_t references() const { return cellCount; }

private:
    std::vector<std::uint32_t> order;
    std::vector<std::uint32_t> numbers;
    std::size_t cellCount = 0;
};

} // namespace workbook
