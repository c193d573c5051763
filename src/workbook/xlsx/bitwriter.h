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
        // All eight bytes every time, and then as many taken as are complete: no loop.
        bytes.put64(pending);
        bytes.grow(pendingBits / 8);
        pending >>= pendingBits & ~7U;
        pendingBits &= 7U;
    }

    /** Fills the last byte. */
    void align() { put(0, (8 - pendingBits) % 8); }

    /** What is complete; clear() takes it away. */
    [[nodiscard]] std::string_view view() const { return bytes.view(); }
    void clear() { bytes.clear(); }

private:
    Buffer bytes;
    std::uint64_t pending = 0;
    unsigned pendingBits = 0; // below 8
};

} // namespace workbook
