#pragma once

#include "workbook/writing/buffer.h"

#include <cstdint>

namespace workbook
{

/** Packs numbers of any width into bytes, lowest bit first. */
class BitWriter
{
public:
    static constexpr unsigned maxBits = 56;

    /** Appends the lowest `count` bits of `bits`, at most maxBits; the others must be 0. */
    void put(std::uint64_t bits, unsigned count)
    {
        pending |= bits << pendingBits;
        pendingBits += count;
        // Writes all eight bytes and then appends only the complete ones, which needs no loop.
        bytes.put64(pending);
        bytes.grow(pendingBits / 8);
        pending >>= pendingBits & ~7U;
        pendingBits &= 7U;
    }

    /** Fills the last byte with zeros. */
    void align() { put(0, (8 - pendingBits) % 8); }

    /** Returns the complete bytes; clear() removes them. */
    [[nodiscard]] std::string_view view() const { return bytes.view(); }
    void clear() { bytes.clear(); }

private:
    Buffer bytes;
    std::uint64_t pending = 0;
    unsigned pendingBits = 0; // fewer than 8
};

} // namespace workbook
