#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A text as either library takes it: made once, so that no run pays for it.
struct SampleText {
    explicit SampleText(const std::string &utf8Text);

    std::string utf8;
    std::wstring wide;
};

/// The format of a cell; Plain is none.
enum class SampleLook { Plain, Text, Centred, Bordered };

/// A cell: text, else a number, else blank.
struct SampleCell {
    const SampleText *text = nullptr;
    double number = 0;
    bool isNumber = false;
    SampleLook look = SampleLook::Plain;
};

enum class SampleMix {
    Daily,       ///< a daily report: a thousand people, every second time cell blank
    Mixed,       ///< nine columns of text and six of numbers
    UniqueTexts, ///< the same, with six of ten texts occurring only once
    Numbers      ///< numbers alone: whole ones, hundredths and fractions
};

/**
 * The content of the sheet that both libraries write, in fifteen columns. The same at every call.
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
    std::vector<SampleText> uniqueTexts;     ///< of the mix UniqueTexts
    std::vector<std::uint32_t> uniquePlaces; ///< by cell of text: a place in uniqueTexts, or none
};
