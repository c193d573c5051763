#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace workbook
{

/**
 * A set of distinct texts, numbered from 0 in the order of their insertion.
 *
 * All characters are in one string, and the hash table contains only the numbers of texts. Looking
 * up a text therefore does not copy it.
 */
class StringTable
{
public:
    /** Returns the number of `text`. Adds `text` if it is new. */
    std::uint32_t intern(std::u16string_view text);

    /** Returns the text with the number `index`. The result is valid until the next intern(). */
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
    // The hash table. A slot is 0 if it is free, otherwise the number of a text + 1. The number of
    // slots is a power of two.
    std::vector<std::uint32_t> slots;
};

} // namespace workbook
