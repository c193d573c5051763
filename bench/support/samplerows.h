#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A text in the encodings of both libraries. Created in advance, so that the time for the
/// conversion is not measured.
struct SampleText {
    explicit SampleText(const std::string &utf8Text);

    std::string utf8;
    std::wstring wide;
};

/// The format of a cell. Plain means no format.
enum class SampleLook { Plain, Text, Centred, Bordered };

/// A cell. It is a text if `text` is not null, otherwise a number if `isNumber`, otherwise blank.
struct SampleCell {
    const SampleText *text = nullptr;
    double number = 0;
    bool isNumber = false;
    SampleLook look = SampleLook::Plain;
};

enum class SampleMix {
    Daily,       ///< a daily report: a thousand people, every second cell of the times blank
    Mixed,       ///< nine columns of text and six of numbers
    UniqueTexts, ///< like Mixed, but six of ten texts occur only once
    Numbers      ///< only numbers: integers, hundredths and fractions
};

/**
 * The content of the sheet that both libraries write, in fifteen columns. Two objects with the same
 * arguments have the same content.
 */
class SampleRows
{
public:
    static constexpr int columns = 15;

    SampleRows(SampleMix mix, int rows);

    int count() const { return rowCount; }
    const SampleText &heading(int column) const { return headings[std::size_t(column)]; }
    const SampleText &sheetName() const { return name; }
    SampleCell cell(int row, int column) const;

private:
    void makeUniqueTexts();
    SampleCell dailyCell(int row, int column) const;
    SampleCell mixedCell(int row, int column) const;
    SampleCell numberCell(int row, int column) const;

    SampleMix mix;
    int rowCount;
    SampleText name;
    std::vector<SampleText> headings, persons, groups, shifts, departments, centres, times,
        interruptions;
    std::vector<SampleText> uniqueTexts; ///< for the mix UniqueTexts
    std::vector<std::uint32_t>
        uniquePlaces; ///< for each text cell, its index in uniqueTexts, or notUnique
};
