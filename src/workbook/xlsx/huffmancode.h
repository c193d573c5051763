#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace workbook
{

/**
 * A prefix code: frequent symbols get short words. A symbol that does not occur has a word of no
 * bits. There are two words at least, because some readers refuse less.
 */
class HuffmanCode
{
public:
    static constexpr std::size_t maxSymbols = 286;

    struct Word {
        std::uint32_t bits = 0; // the first bit is the lowest, as deflate sends it
        unsigned length = 0;
    };

    /** `counts`: how often each of the `symbols` occurs. `longest`: the most bits of a word. */
    HuffmanCode(const std::uint32_t *counts, std::size_t symbols, unsigned longest);

    const Word &operator[](std::size_t symbol) const { return words[symbol]; }

private:
    void assignBits(unsigned longest);

    std::array<Word, maxSymbols> words{};
};

} // namespace workbook
