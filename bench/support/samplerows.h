#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A text as either library takes it: made once, so that no run pays for it.
struct SampleText {
    explicit SampleText(const std::string &utf8Text);

    std::string utf8;
    std::wstring wide;
};

/**
 * The content of the sheet that both libraries write: a daily report's fifteen columns, a thousand
 * people, and every second time cell blank. The same at every call.
 */
class SampleRows
{
public:
    static constexpr int columns = 15;
    static constexpr int firstTime = 7;
    static constexpr int timeColumns = 7;

    explicit SampleRows(int rows);

    int count() const { return rowCount; }
    const SampleText &heading(int column) const { return headings[std::size_t(column)]; }
    const SampleText &sheetName() const { return name; }

    double personalNumber(int row) const { return 1000 + row % people; }
    double dayOfMonth(int row) const { return 1 + row / people % 31; }
    const SampleText &person(int row) const { return of(persons, std::size_t(row % people)); }
    const SampleText &group(int row) const { return of(groups, std::size_t(row % people)); }
    const SampleText &shift(int row) const { return of(shifts, mixed(row, 1)); }
    const SampleText &department(int row) const
    {
        return of(departments, std::size_t(row % people));
    }
    const SampleText &centre(int row) const { return of(centres, std::size_t(row % people)); }
    const SampleText &interruptions(int row) const { return of(interruptionTexts, mixed(row, 2)); }
    /// Null: the cell is blank and bordered. `index` counts the time columns.
    const SampleText *time(int row, int index) const;

private:
    static constexpr int people = 1000;

    static std::size_t mixed(int row, unsigned salt);
    static const SampleText &of(const std::vector<SampleText> &texts, std::size_t place)
    {
        return texts[place % texts.size()];
    }

    int rowCount;
    SampleText name;
    std::vector<SampleText> headings, persons, groups, shifts, departments, centres, times,
        interruptionTexts;
};
