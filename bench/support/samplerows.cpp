#include "support/samplerows.h"

#include <codecvt>
#include <locale>

namespace
{

std::vector<SampleText> numbered(const std::string &stem, int count)
{
    std::vector<SampleText> texts;
    texts.reserve(std::size_t(count));
    for (int i = 1; i <= count; ++i)
        texts.emplace_back(stem + std::to_string(i));
    return texts;
}

std::string twoDigits(int number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

/// Every minute of a working day of ten hours.
std::vector<SampleText> minutesOfDay()
{
    std::vector<SampleText> texts;
    for (int minute = 1; minute <= 600; ++minute)
        texts.emplace_back(twoDigits(minute / 60) + ":" + twoDigits(minute % 60) + ":00");
    return texts;
}

std::vector<SampleText> interruptionsOfDay()
{
    std::vector<SampleText> texts;
    for (int i = 0; i < 40; ++i)
        texts.emplace_back(i % 4 == 0 ? "" : "[L 00:" + twoDigits(i) + ":00][O 00:30:00-2x]");
    return texts;
}

} // namespace

SampleText::SampleText(const std::string &utf8Text)
    : utf8(utf8Text)
    , wide(std::wstring_convert<std::codecvt_utf8<wchar_t>>().from_bytes(utf8Text))
{
}

SampleRows::SampleRows(int rows)
    : rowCount(rows)
    , name("Denný report doch. 11-2026")
    , persons(numbered("Priezviskový Ján ", people))
    , groups(numbered("Skupina ", 20))
    , shifts(numbered("", 3))
    , departments(numbered("Zaradenie číslo ", 30))
    , centres(numbered("Stredisko ", 15))
    , times(minutesOfDay())
    , interruptionTexts(interruptionsOfDay())
{
    for (const char *text : {"OSCISLO", "MENO", "SKUPINA", "ZMENA", "ZARADENIE", "STREDISKO", "DEN",
                             "ODPRACOVANY CAS", "NEODPRACOVANY CAS", "NADCAS", "NEUZNANY CAS",
                             "ZAOKRUHLENIE", "POSUN", "PENALIZACIA", "PRERUSENIA"})
        headings.emplace_back(text);
}

const SampleText *SampleRows::time(int row, int index) const
{
    if ((row + index) % 2 == 0)
        return nullptr;
    return &of(times, mixed(row, 3 + unsigned(index)));
}

/// Spreads rows over texts without a pattern that a packer could find.
std::size_t SampleRows::mixed(int row, unsigned salt)
{
    std::uint64_t value = (std::uint64_t(unsigned(row)) << 8U) + salt;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return std::size_t(value >> 33U);
}
