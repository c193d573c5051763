#pragma once

#include "workbook/writing/buffer.h"

#include <cstdint>

namespace workbook
{

/** Packs numbers of up to maxBits bits into bytes, lowest bit first. */
class BitWriter
{
public:
    static constexpr unsigned maxBits = 56;

    /** Appends the lowest `count` (at most maxBits) bits of `bits`; all other bits must be 0. */
    void put(std::uint64_t bits, unsigned count)
    {
        pending |= bits << pendingBits;
        pendingBits += count;
        // To avoid a loop, write all eight bytes, but append only the complete ones.
        bytes.put64(pending);
        bytes.grow(pendingBits / 8);
        pending >>= pendingBits & ~7U;
        pendingBits &= 7U;
    }

    /** Pads the last byte with zero bits. */
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
