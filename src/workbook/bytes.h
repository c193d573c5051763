#pragma once

#include <cstdint>
#include <cstring>
#include <string>

/** Both file formats are little-endian, whatever the machine: this is the one place to know. */
namespace workbook
{

inline void appendU8(std::string &out, unsigned value)
{
    out += static_cast<char>(value & 0xFFU);
}

inline void appendU16(std::string &out, unsigned value)
{
    const char bytes[] = {static_cast<char>(value), static_cast<char>(value >> 8U)};
    out.append(bytes, sizeof bytes);
}

inline void appendU32(std::string &out, std::uint32_t value)
{
    const char bytes[] = {static_cast<char>(value), static_cast<char>(value >> 8U),
                          static_cast<char>(value >> 16U), static_cast<char>(value >> 24U)};
    out.append(bytes, sizeof bytes);
}

inline void appendU64(std::string &out, std::uint64_t value)
{
    appendU32(out, static_cast<std::uint32_t>(value));
    appendU32(out, static_cast<std::uint32_t>(value >> 32U));
}

inline void appendF64(std::string &out, double value)
{
    std::uint64_t bits = 0;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    appendU64(out, bits);
}

} // namespace workbook
