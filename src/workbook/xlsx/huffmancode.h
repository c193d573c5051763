#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace workbook
{

/**
 * A prefix code: frequent symbols have short words. A symbol that does not occur has a word of
 * length 0. There are at least two other words, because some readers refuse fewer.
 */
class HuffmanCode
{
public:
    static constexpr std::size_t maxSymbols = 286;

    struct Word {
        std::uint32_t bits = 0; // the first bit is the lowest, as in deflate
        unsigned length = 0;
    };

    /**
     * `counts` says how often each symbol occurs; `symbols` is their number. No word is longer than
     * `longest` bits.
     */
    HuffmanCode(const std::uint32_t *counts, std::size_t symbols, unsigned longest);

    const Word &operator[](std::size_t symbol) const { return words[symbol]; }

private:
    void assignBits(unsigned longest);

    std::array<Word, maxSymbols> words{};
};

} // namespace workbook
