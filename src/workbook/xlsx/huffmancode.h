#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace workbook
{

/**
 * A prefix code: frequent symbols have short words. Symbols that do not occur have words of length
 * 0. If fewer than two symbols occur, other symbols get words too, because some readers require at
 * least two words.
 */
class HuffmanCode
{
public:
    static constexpr std::size_t maxSymbols = 286;

    struct Word {
        std::uint32_t bits = 0; // the word's first bit is the lowest bit, as in deflate
        unsigned length = 0;
    };

    /**
     * `counts` is an array with the number of occurrences of each symbol. `symbols` is the number
     * of symbols. No word is longer than `longest` bits.
     */
    HuffmanCode(const std::uint32_t *counts, std::size_t symbols, unsigned longest);

    const Word &operator[](std::size_t symbol) const { return words[symbol]; }

private:
    void assignBits(unsigned longest);

    std::array<Word, maxSymbols> words{};
};

} // namespace workbook
