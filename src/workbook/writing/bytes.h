#pragma once

#include <cstdint>
#include <cstring>
#include <string>

/** Both file formats are little-endian, whatever the machine: this is the one place to know. */
namespace workbook
{

inline void storeU16(char *at, unsigned value)
{
    at[0] = static_cast<char>(value);
    at[1] = static_cast<char>(value >> 8U);
}

inline void storeU32(char *at, std::uint32_t value)
{
    storeU16(at, value & 0xFFFFU);
    storeU16(at + 2, value >> 16U);
}

inline void storeU64(char *at, std::uint64_t value)
{
    storeU32(at, static_cast<std::uint32_t>(value));
    storeU32(at + 4, static_cast<std::uint32_t>(value >> 32U));
}

inline void storeF64(char *at, double value)
{
    std::uint64_t bits = 0;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    storeU64(at, bits);
}

inline void appendU8(std::string &out, unsigned value)
{
    out += static_cast<char>(value & 0xFFU);
}

inline void appendU16(std::string &out, unsigned value)
{
    char bytes[2];
    storeU16(bytes, value);
    out.append(bytes, sizeof bytes);
}

inline void appendU32(std::string &out, std::uint32_t value)
{
    char bytes[4];
    storeU32(bytes, value);
    out.append(bytes, sizeof bytes);
}

inline void appendU64(std::string &out, std::uint64_t value)
{
    char bytes[8];
    storeU64(bytes, value);
    out.append(bytes, sizeof bytes);
}

inline void appendF64(std::string &out, double value)
{
    char bytes[8];
    storeF64(bytes, value);
    out.append(bytes, sizeof bytes);
}

} // namespace workbook
