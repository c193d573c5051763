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

/** Returns whether a text can be stored in Latin-1, which takes half the bytes of UTF-16. */
bool isNarrow(std::u16string_view text);

/**
 * Writes a stream of records, each `u16 id, u16 size, data` with up to 8,224 bytes of data. For
 * each record, call begin(), append its data, and call end(). A record with more data is an error,
 * latched in the sink.
 *
 * The constructor starts the stream at the end of the sink. Positions are relative to the start of
 * the stream.
 */
class RecordWriter
{
public:
    static constexpr std::size_t maxData = 8224;

    explicit RecordWriter(ByteSink &byteSink);

    RecordWriter &begin(unsigned id);
    void end();

    RecordWriter &u8(unsigned value) { return after(buffer.u8(value)); }
    RecordWriter &u16(unsigned value) { return after(buffer.u16(value)); }
    RecordWriter &u32(std::uint32_t value) { return after(buffer.u32(value)); }
    RecordWriter &f64(double value) { return after(buffer.f64(value)); }
    RecordWriter &bytes(std::string_view value) { return after(buffer.append(value)); }

    /** Appends u8 count, u8 flags, characters. */
    RecordWriter &shortText(std::u16string_view text);

    /** Appends u16 count, u8 flags, characters. */
    RecordWriter &longText(std::u16string_view text);

    /** Appends only the characters: one byte per UTF-16 unit if `narrow`, otherwise two. */
    RecordWriter &characters(std::u16string_view text, bool narrow);

    /** Writes a complete record that contains a single u16. */
    void single(unsigned id, unsigned value) { begin(id).u16(value).end(); }

    /**
     * Returns the position of the next byte. Overflows in streams of 4 GiB or more, but
     * CompoundFile::finish() rejects such streams.
     */
    [[nodiscard]] std::uint32_t position() const
    {
        return static_cast<std::uint32_t>(sink.size() - start + buffer.size());
    }

    /** Returns the number of data bytes in the open record. */
    [[nodiscard]] std::size_t dataBytes() const { return buffer.size() - dataBegin; }

    /** Overwrites bytes from the position `at` on. Call it only between records. */
    void patch(std::uint32_t at, std::string_view bytes);

    /** Passes all records to the sink. Call it only between records. */
    void flush();

private:
    RecordWriter &after(const Buffer & /*buffer*/) { return *this; }

    ByteSink &sink;
    const std::uint64_t start;
    Buffer buffer;             // complete records, then the open one
    std::size_t dataBegin = 0; // where the data of the open record begin in `buffer`
};

} // namespace workbook
