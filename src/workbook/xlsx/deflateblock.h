#pragma once

#include "workbook/xlsx/bitwriter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

/**
 * A block of a deflate stream (RFC 1951). Collects its items: bytes, and copies of earlier bytes.
 * Keeps the items until write(), because the best code depends on all items.
 */
class DeflateBlock
{
public:
    static constexpr std::size_t minCopy = 3;
    static constexpr std::size_t maxCopy = 258;
    static constexpr std::size_t maxDistance = 32768;

    DeflateBlock();

    void byte(char byte)
    {
        const auto symbol = static_cast<unsigned char>(byte);
        ++symbolCounts[symbol];
        items[size++] = symbol;
    }

    /** Appends a copy of the `length` bytes (minCopy to maxCopy) that are `distance` bytes back. */
    void copy(std::size_t length, std::size_t distance)
    {
        const Item item = isCopy | static_cast<Item>((distance - 1) << 8U | (length - minCopy));
        ++symbolCounts[firstLength + lengthClass(item).symbol];
        ++distanceCounts[distanceClass(item).symbol];
        items[size++] = item;
    }

    [[nodiscard]] bool full() const { return size == items.size(); }

    /** Writes the block and starts the next one. */
    void write(BitWriter &out, bool isLast);

private:
    // A byte, or a copy: the flag isCopy, 15 bits for distance - 1, 8 bits for length - minCopy.
    using Item = std::uint32_t;
    static constexpr Item isCopy = 1U << 31U;

    static constexpr std::size_t endOfBlock = 256;
    static constexpr std::size_t firstLength = 257;
    static constexpr std::size_t symbols = 286;
    static constexpr std::size_t distances = 30;

    /** An encoded length or distance: the symbol of a range, and extra bits that select a value. */
    struct Class {
        unsigned symbol;
        unsigned extraBits;
        std::uint32_t extra;
    };

    /**
     * Encodes a value. The first 2^(`bits` + 1) symbols stand for one value each. Each of the next
     * 2^`bits` symbols stands for two values, each of the 2^`bits` symbols after these for four
     * values, and so on.
     */
    static Class classOf(std::uint32_t value, unsigned bits)
    {
        const unsigned log = 31U - static_cast<unsigned>(__builtin_clz(value | 1U));
        const unsigned extraBits = log > bits ? log - bits : 0;
        return {(extraBits << bits) + (value >> extraBits), extraBits,
                value & ((1U << extraBits) - 1)};
    }
    static Class lengthClass(Item item)
    {
        const Item length = item & 0xFFU;
        return length == maxCopy - minCopy ? Class{28, 0, 0} : classOf(length, 2);
    }
    static Class distanceClass(Item item) { return classOf((item & ~isCopy) >> 8U, 1); }

    std::vector<Item> items;
    std::size_t size = 0;
    std::array<std::uint32_t, symbols> symbolCounts{};
    std::array<std::uint32_t, distances> distanceCounts{};
};

} // namespace workbook
