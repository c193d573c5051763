#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace workbook
{

/**
 * Collects bytes for a file. Optimised for many small pieces: the bytes are written into reserved
 * memory, which clear() does not free.
 *
 * Numbers are stored in little-endian byte order, as both file formats require.
 */
class Buffer
{
public:
    /**
     * Returns the position after the last byte, where up to `bytes` bytes may be written. To append
     * the written bytes, call grow() with their number.
     */
    char *room(std::size_t bytes)
    {
        if (storage.size() - length < bytes)
            storage.resize(2 * (length + bytes));
        return storage.data() + length;
    }

    void grow(std::size_t bytes) { length += bytes; }

    /**
     * Writes eight bytes after the last byte without appending them. To append some of them, call
     * grow() with their number.
     */
    void put64(std::uint64_t value) { store<8>(room(8), value); }

    Buffer &append(std::string_view bytes)
    {
        std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
        length += bytes.size();
        return *this;
    }

    Buffer &zeros(std::size_t count)
    {
        std::memset(room(count), 0, count);
        length += count;
        return *this;
    }

    Buffer &u8(unsigned value) { return number<1>(value); }
    Buffer &u16(unsigned value) { return number<2>(value); }
    Buffer &u32(std::uint32_t value) { return number<4>(value); }
    Buffer &u64(std::uint64_t value) { return number<8>(value); }
    Buffer &f64(double value)
    {
        std::uint64_t bits = 0;
        static_assert(sizeof bits == sizeof value);
        std::memcpy(&bits, &value, sizeof bits);
        return u64(bits);
    }

    /** Overwrites two appended bytes, from the offset `at` on. */
    void setU16(std::size_t at, unsigned value) { store<2>(storage.data() + at, value); }

    void clear() { length = 0; }

    [[nodiscard]] std::size_t size() const { return length; }
    [[nodiscard]] std::string_view view() const { return {storage.data(), length}; }

private:
    template <unsigned bytes>
    static void store(char *at, std::uint64_t value)
    {
        for (unsigned i = 0; i < bytes; ++i)
            at[i] = static_cast<char>(value >> (8 * i));
    }

    template <unsigned bytes>
    Buffer &number(std::uint64_t value)
    {
        store<bytes>(room(bytes), value);
        length += bytes;
        return *this;
    }

    std::string storage;    // the reserved memory, including unused bytes
    std::size_t length = 0; // the number of appended bytes
};

} // namespace workbook
