#pragma once

#include "workbook/writing/buffer.h"
#include "workbook/writing/bytes.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace workbook
{

class ByteSink;

constexpr std::uint32_t recordHead = 4; // bytes
constexpr unsigned twipsPerPoint = 20;

/** True when a text is stored in one byte a character (Latin-1), else it takes two (UTF-16). */
bool isNarrow(std::u16string_view text);

/**
 * A stream of records, each `u16 id, u16 size, data`, with data of 8,224 bytes at most. A record
 * is begun, filled and ended; a longer one latches the sink's error.
 *
 * Positions count from where the writer was made.
 */
class RecordWriter
{
public:
    static constexpr std::size_t maxData = 8224;

    explicit RecordWriter(ByteSink &sink);

    RecordWriter &begin(unsigned id);
    void end();

    RecordWriter &u8(unsigned value)
    {
        *buffer.room(1) = static_cast<char>(value);
        return grown(1);
    }
    RecordWriter &u16(unsigned value)
    {
        storeU16(buffer.room(2), value);
        return grown(2);
    }
    RecordWriter &u32(std::uint32_t value)
    {
        storeU32(buffer.room(4), value);
        return grown(4);
    }
    RecordWriter &f64(double value)
    {
        storeF64(buffer.room(8), value);
        return grown(8);
    }
    RecordWriter &bytes(std::string_view value)
    {
        buffer.append(value);
        return *this;
    }

    /** u8 count, flags, characters. */
    RecordWriter &shortText(std::u16string_view text);

    /** u16 count, flags, characters. */
    RecordWriter &longText(std::u16string_view text);

    /** Characters alone. */
    RecordWriter &characters(std::u16string_view text, bool narrow);

    /** A whole record of one number. */
    void flag(unsigned id, unsigned value) { begin(id).u16(value).end(); }

    /** Where the next byte goes. */
    [[nodiscard]] std::uint32_t position() const;

    /** Bytes of data in the record that is open. */
    [[nodiscard]] std::size_t dataBytes() const { return buffer.size() - dataBegin; }

    /** Overwrites what was written before; only between records. */
    void patch(std::uint32_t at, std::string_view bytes);

    /** Hands everything to the sink; only between records. */
    void flush();

private:
    RecordWriter &grown(std::size_t bytes)
    {
        buffer.grow(bytes);
        return *this;
    }

    ByteSink &sink;
    const std::uint64_t start;
    Buffer buffer;             // whole records, and the one that is open
    std::size_t dataBegin = 0; // of the open one
};

} // namespace workbook
