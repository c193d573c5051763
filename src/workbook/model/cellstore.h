#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

enum class CellKind : std::uint8_t { Erased, Blank, Number, Text, Formula };

/** One cell in 16 bytes: a sheet of a hundred thousand rows has millions of them. */
struct Cell {
    std::uint64_t row : 20;
    std::uint64_t column : 14;
    std::uint64_t kindCode : 4;
    std::uint64_t format : 26;
    union {
        double number;
        std::uint32_t index; // of a text or a formula
    };

    [[nodiscard]] CellKind kind() const { return static_cast<CellKind>(kindCode); }

    /** Ascending keys are the order of the files: by row, then by column. */
    [[nodiscard]] std::uint64_t key() const { return (std::uint64_t{row} << 14U) | column; }
};

static_assert(sizeof(Cell) == 16);

Cell makeCell(int row, int column, CellKind kind, std::uint32_t format = 0);

/**
 * The cells of a sheet. They may come in any order and the last write to a place wins. Writing
 * row by row, and within the last row in any order, is the fast way: nothing is left to sort.
 */
class CellStore
{
public:
    /** A cell of kind Erased takes away what was there. */
    void put(const Cell &cell);

    /** Brings the cells into the order of the files, one for each place, without erased ones. */
    void sort();

    /** As sort() left them. */
    [[nodiscard]] const std::vector<Cell> &all() const { return cells; }

    /** The cell at a place or null; only right after sort(). */
    [[nodiscard]] const Cell *find(int row, int column) const;

private:
    void putIntoLastRow(const Cell &cell);

    std::vector<Cell> cells;
    std::size_t lastRow = 0; // where the run of cells begins that is sorted and of one row
    std::size_t tidyAt = 4096;
    bool ordered = true;
    bool holdsErased = false;
};

} // namespace workbook
