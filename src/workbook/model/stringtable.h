#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace workbook
{

/**
 * Distinct texts, kept once each and known by a number from 0 in the order of their arrival.
 *
 * All characters lie in one block and the hash table holds numbers only, so that a text that is
 * there already costs no allocation.
 */
class StringTable
{
public:
    /** The number of `text`, which is added when it is new. */
    std::uint32_t intern(std::u16string_view text);

    /** Valid until the next intern. */
    [[nodiscard]] std::u16string_view at(std::uint32_t index) const;

    [[nodiscard]] std::size_t size() const { return entries.size(); }

private:
    struct Entry {
        std::size_t begin;
        std::uint32_t length;
        std::uint32_t hash;
    };

    [[nodiscard]] std::size_t slotOf(std::u16string_view text, std::uint32_t hash) const;
    void grow();

    std::u16string characters;
    std::vector<Entry> entries;
    std::vector<std::uint32_t> slots; // 0 is free, else a number + 1; a power of two of them
};

} // namespace workbook
