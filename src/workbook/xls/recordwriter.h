#pragma once

#include "workbook/writing/buffer.h"
#include "workbook/writing/bytesink.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace workbook
{

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

    RecordWriter &u8(unsigned value) { return after(buffer.u8(value)); }
    RecordWriter &u16(unsigned value) { return after(buffer.u16(value)); }
    RecordWriter &u32(std::uint32_t value) { return after(buffer.u32(value)); }
    RecordWriter &f64(double value) { return after(buffer.f64(value)); }
    RecordWriter &bytes(std::string_view value) { return after(buffer.append(value)); }

    /** u8 count, flags, characters. */
    RecordWriter &shortText(std::u16string_view text);

    /** u16 count, flags, characters. */
    RecordWriter &longText(std::u16string_view text);

    /** Characters alone. */
    RecordWriter &characters(std::u16string_view text, bool narrow);

    /** A whole record of one number. */
    void flag(unsigned id, unsigned value) { begin(id).u16(value).end(); }

    /** Where the next byte goes. Beyond 2 GiB it is wrong; such a container is not finished. */
    [[nodiscard]] std::uint32_t position() const
    {
        return static_cast<std::uint32_t>(sink.size() - start + buffer.size());
    }

    /** Bytes of data in the record that is open. */
    [[nodiscard]] std::size_t dataBytes() const { return buffer.size() - dataBegin; }

    /** Overwrites what was written before; only between records. */
    void patch(std::uint32_t at, std::string_view bytes);

    /** Hands everything to the sink; only between records. */
    void flush();

private:
    RecordWriter &after(const Buffer & /*buffer*/) { return *this; }

    ByteSink &sink;
    const std::uint64_t start;
    Buffer buffer;             // whole records, and the one that is open
    std::size_t dataBegin = 0; // of the open one
};

} // namespace workbook
