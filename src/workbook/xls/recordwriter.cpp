#include "workbook/xls/recordwriter.h"

#include <algorithm>

namespace workbook
{

namespace
{

constexpr std::size_t chunkBytes = 0x10000;
constexpr unsigned wideFlag = 1;

} // namespace

bool isNarrow(std::u16string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x100; });
}

RecordWriter::RecordWriter(ByteSink &byteSink)
    : sink(byteSink)
    , start(byteSink.size())
{
}

RecordWriter &RecordWriter::begin(unsigned id)
{
    u16(id).u16(0);
    dataBegin = buffer.size();
    return *this;
}

void RecordWriter::end()
{
    const std::size_t size = dataBytes();
    if (size > maxData)
        sink.fail();
    buffer.setU16(dataBegin - 2, static_cast<unsigned>(size));
    if (buffer.size() >= chunkBytes)
        flush();
}

RecordWriter &RecordWriter::shortText(std::u16string_view text)
{
    const bool narrow = isNarrow(text);
    u8(static_cast<unsigned>(text.size())).u8(narrow ? 0 : wideFlag);
    return characters(text, narrow);
}

RecordWriter &RecordWriter::longText(std::u16string_view text)
{
    const bool narrow = isNarrow(text);
    u16(static_cast<unsigned>(text.size())).u8(narrow ? 0 : wideFlag);
    return characters(text, narrow);
}

RecordWriter &RecordWriter::characters(std::u16string_view text, bool narrow)
{
    for (const char16_t unit : text) {
        if (narrow)
            u8(unit);
        else
            u16(unit);
    }
    return *this;
}

void RecordWriter::patch(std::uint32_t at, std::string_view bytes)
{
    flush();
    sink.patch(start + at, bytes);
}

void RecordWriter::flush()
{
    sink.append(buffer.view());
    buffer.clear();
}

} // namespace workbook
