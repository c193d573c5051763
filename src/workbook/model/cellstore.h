#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

enum class CellKind : std::uint8_t { Erased, Blank, Number, Text, Formula };

/** A cell. Packed into 16 bytes, because a sheet can have millions of cells. */
struct Cell {
    std::uint64_t row : 20;
    std::uint64_t column : 14;
    std::uint64_t kindCode : 4;
    std::uint64_t format : 26;
    union {
        double number;
        std::uint32_t index; // of the text or the formula in a string table of the book
    };

    [[nodiscard]] CellKind kind() const { return static_cast<CellKind>(kindCode); }
    void setKind(CellKind kind) { kindCode = static_cast<unsigned>(kind) & 0xFU; }

    /** Orders cells by row, then by column. */
    [[nodiscard]] std::uint64_t key() const { return (std::uint64_t{row} << 14U) | column; }
};

static_assert(sizeof(Cell) == 16);

Cell makeCell(int row, int column, CellKind kind, std::uint32_t format = 0);

/**
 * The cells of a sheet. They may be written in any order. If several cells are written to the same
 * row and column, the last one wins.
 *
 * Files contain cells sorted by row, then by column. A cell written in this order extends the
 * sorted part. A cell written out of order replaces the cell at the same row and column or, if
 * there is no such cell, starts an unsorted tail. All further cells are appended to the tail. Once
 * the tail is as long as the sorted part and has at least 4,096 cells, it is merged into the sorted
 * part. The average time per cell therefore grows at most with the logarithm of the number of
 * cells.
 */
class CellStore
{
public:
    /**
     * Writes a cell. A cell of kind Erased removes the cell at the same row and column. If put()
     * throws, nothing has changed.
     */
    void put(const Cell &cell);

    /** Sorts the cells. Removes overwritten and erased cells. */
    void sort() noexcept;

    /** Returns all cells. Call sort() first. */
    [[nodiscard]] const std::vector<Cell> &all() const { return cells; }

    /** Returns the cell at `row` and `column`, or null if there is none. Call sort() first. */
    [[nodiscard]] const Cell *find(int row, int column) const;

private:
    [[nodiscard]] bool isSorted() const { return sortedEnd == cells.size(); }
    bool replace(const Cell &cell);

    std::vector<Cell> cells;
    std::size_t sortedEnd = 0; // where the unsorted tail begins
    bool holdsErased = false;
};

} // namespace workbook
