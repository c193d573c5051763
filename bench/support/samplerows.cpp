#include "support/samplerows.h"

#include <cmath>
#include <codecvt>
#include <limits>
#include <locale>

namespace
{

constexpr int people = 1000;
constexpr int textColumns = 9;
constexpr std::uint32_t notUnique = std::numeric_limits<std::uint32_t>::max();

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

/// Returns all times from one minute to ten hours in steps of a minute, as "HH:mm:00".
std::vector<SampleText> minutesOfDay()
{
    constexpr int minutes = 600;
    std::vector<SampleText> texts;
    texts.reserve(minutes);
    for (int minute = 1; minute <= minutes; ++minute)
        texts.emplace_back(twoDigits(minute / 60) + ":" + twoDigits(minute % 60) + ":00");
    return texts;
}

std::vector<SampleText> interruptionsOfDay()
{
    constexpr int count = 40;
    std::vector<SampleText> texts;
    texts.reserve(count);
    for (int i = 0; i < count; ++i)
        texts.emplace_back(i % 4 == 0 ? "" : "[L 00:" + twoDigits(i) + ":00][O 00:30:00-2x]");
    return texts;
}

/// Returns a pseudo-random number for a row, so that a compressor finds no pattern in the cells.
std::size_t spread(int row, unsigned salt)
{
    std::uint64_t value = (std::uint64_t(unsigned(row)) << 8U) + salt;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return std::size_t(value >> 33U);
}

SampleCell textCell(const std::vector<SampleText> &texts, std::size_t place,
                    SampleLook look = SampleLook::Text)
{
    return {&texts[place % texts.size()], 0, false, look};
}

SampleCell numberCellOf(double number, SampleLook look = SampleLook::Plain)
{
    return {nullptr, number, true, look};
}

} // namespace

SampleText::SampleText(const std::string &utf8Text)
    : utf8(utf8Text)
    , wide(std::wstring_convert<std::codecvt_utf8<wchar_t>>().from_bytes(utf8Text))
{
}

SampleRows::SampleRows(SampleMix sampleMix, int rows)
    : mix(sampleMix)
    , rowCount(rows)
    , name("Denný report doch. 11-2026")
    , persons(numbered("Priezviskový Ján ", people))
    , groups(numbered("Skupina ", 20))
    , shifts(numbered("", 3))
    , departments(numbered("Zaradenie číslo ", 30))
    , centres(numbered("Stredisko ", 15))
    , times(minutesOfDay())
    , interruptions(interruptionsOfDay())
{
    for (const char *text : {"OSCISLO", "MENO", "SKUPINA", "ZMENA", "ZARADENIE", "STREDISKO", "DEN",
                             "ODPRACOVANY CAS", "NEODPRACOVANY CAS", "NADCAS", "NEUZNANY CAS",
                             "ZAOKRUHLENIE", "POSUN", "PENALIZACIA", "PRERUSENIA"})
        headings.emplace_back(text);
    if (mix == SampleMix::UniqueTexts)
        makeUniqueTexts();
}

void SampleRows::makeUniqueTexts()
{
    for (int cell = 0; cell < rowCount * textColumns; ++cell) {
        const bool unique = spread(cell, 100) % 10 < 6;
        uniquePlaces.push_back(unique ? std::uint32_t(uniqueTexts.size()) : notUnique);
        if (unique)
            uniqueTexts.emplace_back("Poznámka " + std::to_string(spread(cell, 101)) + " k dňu " +
                                     std::to_string(cell));
    }
}

SampleCell SampleRows::cell(int row, int column) const
{
    if (mix == SampleMix::Daily)
        return dailyCell(row, column);
    return mix == SampleMix::Numbers ? numberCell(row, column) : mixedCell(row, column);
}

SampleCell SampleRows::dailyCell(int row, int column) const
{
    const auto person = std::size_t(row % people);
    switch (column) {
    case 0:
        return numberCellOf(1000 + row % people);
    case 1:
        return textCell(persons, person);
    case 2:
        return textCell(groups, person);
    case 3:
        return textCell(shifts, spread(row, 1), SampleLook::Centred);
    case 4:
        return textCell(departments, person);
    case 5:
        return textCell(centres, person);
    case 6:
        return numberCellOf(1 + row / people % 31);
    case 14:
        return textCell(interruptions, spread(row, 2), SampleLook::Plain);
    default:
        if ((row + column) % 2 == 1)
            return {nullptr, 0, false, SampleLook::Bordered};
        return textCell(times, spread(row, unsigned(column)), SampleLook::Bordered);
    }
}

SampleCell SampleRows::mixedCell(int row, int column) const
{
    const std::size_t place = spread(row, unsigned(column));
    if (column >= textColumns)
        return numberCellOf(column % 2 == 0 ? double(place % 1000) : double(place % 24000) / 100,
                            SampleLook::Bordered);
    if (mix == SampleMix::UniqueTexts) {
        const std::uint32_t unique =
            uniquePlaces[std::size_t(row) * textColumns + std::size_t(column)];
        if (unique != notUnique)
            return textCell(uniqueTexts, unique);
    }
    const std::vector<SampleText> *pools[] = {&persons, &times, &departments};
    return textCell(*pools[column % 3], place,
                    column % 2 == 0 ? SampleLook::Text : SampleLook::Bordered);
}

SampleCell SampleRows::numberCell(int row, int column) const
{
    const auto number = double(spread(row, unsigned(column)) % 100000);
    // libxlsxwriter writes only sixteen digits, so fractions are rounded to six decimals.
    const double kinds[] = {number, number / 100, std::round(number / 7 * 1e6) / 1e6};
    return numberCellOf(kinds[column % 3],
                        column % 2 == 0 ? SampleLook::Plain : SampleLook::Bordered);
}
