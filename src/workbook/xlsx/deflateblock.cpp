#include "workbook/xlsx/deflateblock.h"

#include "workbook/xlsx/huffmancode.h"

#include <algorithm>

// block:   last-block flag (1 bit), kind (2 bits), code, items, end of block
// code:    number of symbols - 257 (5 bits), number of distances - 1 (5 bits), code of the lengths,
//          word length of each symbol, word length of each distance
// code of the lengths: number of word lengths - 4 (4 bits), word lengths (3 bits each, in the order
//          of lengthOrder)
//
// The word lengths of symbols and distances are written in the code of the lengths. This code has a
// symbol for each length, and symbols for runs of equal lengths.

namespace workbook
{

namespace
{

constexpr std::size_t maxItems = 0x4000;
constexpr unsigned longestWord = 15;
constexpr unsigned longestLengthWord = 7;
constexpr unsigned blockWithCode = 2;

// The code of the lengths has a symbol for each length from 0 to 15, and three for repetitions:
constexpr unsigned repeatLast = 16;     // 3 to 6 times
constexpr unsigned repeatZero = 17;     // 3 to 10 times
constexpr unsigned repeatZeroLong = 18; // 11 to 138 times
constexpr std::size_t lengthSymbols = 19;
constexpr std::array<std::size_t, lengthSymbols> lengthOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                                11, 4,  12, 3, 13, 2, 14, 1, 15};

void put(BitWriter &out, const HuffmanCode::Word &word)
{
    out.put(word.bits, word.length);
}

/** Writes the word lengths of a block's codes. Readers reconstruct the words from them. */
class CodeLengths
{
public:
    void add(const HuffmanCode &code, std::size_t symbols)
    {
        for (std::size_t symbol = 0; symbol < symbols; ++symbol)
            lengths.push_back(code[symbol].length);
    }

    void write(BitWriter &out)
    {
        findRuns();
        const HuffmanCode code(counts.data(), counts.size(), longestLengthWord);
        std::size_t sent = lengthSymbols;
        while (sent > 4 && code[lengthOrder[sent - 1]].length == 0)
            --sent;
        out.put(sent - 4, 4);
        for (std::size_t i = 0; i < sent; ++i)
            out.put(code[lengthOrder[i]].length, 3);
        for (const Run &run : runs) {
            put(out, code[run.symbol]);
            out.put(run.extra, run.extraBits);
        }
    }

private:
    struct Run {
        unsigned symbol;
        unsigned extraBits;
        unsigned extra;
    };

    void findRuns()
    {
        for (auto next = lengths.begin(); next != lengths.end();) {
            const unsigned length = *next;
            const auto end = std::find_if(next, lengths.end(),
                                          [length](unsigned other) { return other != length; });
            auto count = static_cast<unsigned>(end - next);
            next = end;
            if (length != 0) {
                addRun({length, 0, 0});
                --count;
            }
            addRepeats(length, count);
        }
    }

    void addRepeats(unsigned length, unsigned count)
    {
        while (count >= 3) {
            const unsigned step = std::min(count, length != 0 ? 6U : 138U);
            if (length != 0)
                addRun({repeatLast, 2, step - 3});
            else if (step <= 10)
                addRun({repeatZero, 3, step - 3});
            else
                addRun({repeatZeroLong, 7, step - 11});
            count -= step;
        }
        for (; count > 0; --count)
            addRun({length, 0, 0});
    }

    void addRun(const Run &run)
    {
        ++counts[run.symbol];
        runs.push_back(run);
    }

    std::vector<unsigned> lengths;
    std::vector<Run> runs;
    std::array<std::uint32_t, lengthSymbols> counts{};
};

} // namespace

DeflateBlock::DeflateBlock()
    : items(maxItems)
{
}

void DeflateBlock::write(BitWriter &out, bool isLast)
{
    symbolCounts[endOfBlock] = 1;
    const HuffmanCode code(symbolCounts.data(), symbols, longestWord);
    const HuffmanCode distanceCode(distanceCounts.data(), distances, longestWord);
    out.put(isLast ? 1 : 0, 1);
    out.put(blockWithCode, 2);
    out.put(symbols - firstLength, 5);
    out.put(distances - 1, 5);
    CodeLengths lengths;
    lengths.add(code, symbols);
    lengths.add(distanceCode, distances);
    lengths.write(out);

    for (std::size_t i = 0; i < size; ++i) {
        const Item item = items[i];
        if ((item & isCopy) == 0) {
            put(out, code[item]);
            continue;
        }
        const Class length = lengthClass(item);
        const Class distance = distanceClass(item);
        const HuffmanCode::Word &first = code[firstLength + length.symbol];
        const HuffmanCode::Word &second = distanceCode[distance.symbol];
        std::uint64_t bits = first.bits | (std::uint64_t{length.extra} << first.length);
        unsigned count = first.length + length.extraBits;
        bits |= (second.bits | (std::uint64_t{distance.extra} << second.length)) << count;
        count += second.length + distance.extraBits;
        out.put(bits, count);
    }
    put(out, code[endOfBlock]);
    size = 0;
    symbolCounts.fill(0);
    distanceCounts.fill(0);
}

} // namespace workbook
