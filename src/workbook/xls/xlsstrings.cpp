#include "workbook/xls/xlsstrings.h"

#include "workbook/model/model.h"
#include "workbook/model/text.h"
#include "workbook/writing/sharedstrings.h"
#include "workbook/xls/records.h"
#include "workbook/xls/recordwriter.h"

#include <algorithm>
#include <vector>

// SST:    u32 number of cells with text, u32 number of strings, strings; continued in CONTINUE
//         records
// string: u16 number of UTF-16 units, u8 flags (1: two bytes per unit), units
// EXTSST: u16 step, then for the first string and every step-th string after it: u32 position,
//         u16 distance from the start of the string's record, u16 0

namespace workbook
{

namespace
{

class StringRecords
{
public:
    StringRecords(const SharedStrings &strings, RecordWriter &writer)
        : out(writer)
        , step(std::max<std::size_t>(strings.used().size() / 128 + 1, 8))
    {
        recordAt = out.position();
        out.begin(record::Sst)
            .u32(static_cast<std::uint32_t>(strings.references()))
            .u32(static_cast<std::uint32_t>(strings.used().size()));
    }

    void add(std::u16string_view text)
    {
        const bool narrow = isNarrow(text);
        const std::size_t unitBytes = narrow ? 1 : 2;
        // The head of a string and the first character (one or two units) must be in one record.
        constexpr std::size_t headBytes = 3;
        if (room() < headBytes + 2 * unitBytes)
            next();
        if (count++ % step == 0)
            places.push_back({out.position(), out.position() - recordAt});
        out.u16(static_cast<unsigned>(text.size())).u8(narrow ? 0 : 1);
        while (true) {
            std::size_t fitting = std::min(text.size(), room() / unitBytes);
            // Some readers decode record by record, so a surrogate pair must be in one record.
            if (fitting < text.size() && isHighSurrogate(text[fitting - 1]))
                --fitting;
            out.characters(text.substr(0, fitting), narrow);
            text.remove_prefix(fitting);
            if (text.empty())
                return;
            // A record that begins in the middle of a string repeats the string's flags.
            next();
            out.u8(narrow ? 0 : 1);
        }
    }

    void finish()
    {
        out.end();
        out.begin(record::ExtSst).u16(static_cast<unsigned>(step));
        for (const Place &place : places)
            out.u32(place.position).u16(place.inRecord).u16(0);
        out.end();
    }

private:
    struct Place {
        std::uint32_t position;
        std::uint32_t inRecord;
    };

    [[nodiscard]] std::size_t room() const { return RecordWriter::maxData - out.dataBytes(); }

    void next()
    {
        out.end();
        recordAt = out.position();
        out.begin(record::Continue);
    }

    RecordWriter &out;
    const std::size_t step;
    std::size_t count = 0;
    std::uint32_t recordAt = 0;
    std::vector<Place> places;
};

} // namespace

void writeXlsStrings(const BookData &book, const SharedStrings &strings, RecordWriter &out)
{
    StringRecords records(strings, out);
    for (const std::uint32_t index : strings.used())
        records.add(book.strings.at(index));
    records.finish();
}

} // namespace workbook
