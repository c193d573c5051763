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

    /** Appends the lowest `count` bits of `bits`, whose other bits must be 0; at most maxBits. */
    void put(std::uint64_t bits, unsigned count)
    {
        pending |= bits << pendingBits;
        pendingBits += count;
        // Without a loop: writes all eight bytes, but appends only the complete ones.
        bytes.put64(pending);
        bytes.grow(pendingBits / 8);
        pending >>= pendingBits & ~7U;
        pendingBits &= 7U;
    }

    /** Completes the last byte with zero bits. */
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
