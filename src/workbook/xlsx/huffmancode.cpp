#include "workbook/xlsx/huffmancode.h"

#include <algorithm>
#include <vector>

namespace workbook
{

namespace
{

/** Returns the symbols that occur, the rarest first. Adds unused ones if fewer than two occur. */
std::vector<std::size_t> usedSymbols(const std::uint32_t *counts, std::size_t symbols)
{
    std::vector<std::size_t> used;
    for (std::size_t symbol = 0; symbol < symbols; ++symbol) {
        if (counts[symbol] > 0)
            used.push_back(symbol);
    }
    for (std::size_t symbol = 0; used.size() < 2; ++symbol) {
        if (counts[symbol] == 0)
            used.push_back(symbol);
    }
    std::stable_sort(used.begin(), used.end(),
                     [counts](std::size_t a, std::size_t b) { return counts[a] < counts[b]; });
    return used;
}

/**
 * Builds a tree: joins the two rarest nodes until one node is left. Returns the depths of the
 * leaves, the deepest first. `counts` are the counts of the leaves in ascending order. The function
 * appends the counts of the joined nodes to `counts`; they are in ascending order too.
 */
std::vector<unsigned> leafDepths(std::vector<std::uint32_t> counts)
{
    const std::size_t leaves = counts.size();
    const std::size_t nodes = 2 * leaves - 1;
    std::vector<std::size_t> parents(nodes);
    std::size_t leaf = 0;
    std::size_t sum = leaves;
    const auto takeRarest = [&] {
        const bool isLeaf = leaf < leaves && (sum == counts.size() || counts[leaf] <= counts[sum]);
        const std::size_t node = isLeaf ? leaf++ : sum++;
        parents[node] = counts.size();
        return counts[node];
    };
    while (counts.size() < nodes) {
        const std::uint32_t rarest = takeRarest();
        counts.push_back(rarest + takeRarest());
    }
    std::vector<unsigned> depths(nodes);
    for (std::size_t node = nodes - 1; node-- > 0;)
        depths[node] = depths[parents[node]] + 1;
    depths.resize(leaves);
    return depths;
}

std::uint32_t reversed(std::uint32_t bits, unsigned length)
{
    std::uint32_t result = 0;
    for (; length > 0; --length, bits >>= 1U)
        result = (result << 1U) | (bits & 1U);
    return result;
}

} // namespace

HuffmanCode::HuffmanCode(const std::uint32_t *counts, std::size_t symbols, unsigned longest)
{
    const std::vector<std::size_t> used = usedSymbols(counts, symbols);
    std::vector<std::uint32_t> leaves;
    leaves.reserve(used.size());
    for (const std::size_t symbol : used)
        leaves.push_back(counts[symbol]);
    std::vector<unsigned> depths = leafDepths(leaves);
    while (depths.front() > longest) {
        // Halved counts differ less, which makes the tree flatter. The order does not change.
        for (std::uint32_t &count : leaves)
            count = count / 2 + 1;
        depths = leafDepths(leaves);
    }
    for (std::size_t i = 0; i < used.size(); ++i)
        words[used[i]].length = depths[i];
    assignBits(longest);
}

/** Assigns consecutive numbers as words, by length and then by symbol. */
void HuffmanCode::assignBits(unsigned longest)
{
    std::uint32_t next = 0;
    for (unsigned length = 1; length <= longest; ++length, next <<= 1U) {
        for (Word &word : words) {
            if (word.length == length)
                word.bits = reversed(next++, length);
        }
    }
}

} // namespace workbook
