#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbook
{

enum class CellKind : std::uint8_t { Erased, Blank, Number, Text, Formula };

/** A cell in only 16 bytes, because a sheet of a hundred thousand rows has millions of cells. */
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
    void setKind(CellKind kind) { kindCode = static_cast<unsigned>(kind) & 0xFU; }

    /** Orders cells by row, then by column. */
    [[nodiscard]] std::uint64_t key() const { return (std::uint64_t{row} << 14U) | column; }
};

static_assert(sizeof(Cell) == 16);

Cell makeCell(int row, int column, CellKind kind, std::uint32_t format = 0);

/**
 * The cells of a sheet. They may be written in any order, and the last write to a place wins.
 *
 * Files order cells by row, then by column. A cell that comes in this order extends the sorted
 * part. Any other cell replaces the cell at its place or, if there is none, starts an unsorted
 * tail, to which all further cells are appended. The tail is merged once it is as long as the
 * sorted part and has at least 4,096 cells. The average time per cell therefore grows at most with
 * the logarithm of the number of cells.
 */
class CellStore
{
public:
    /**
     * Writes a cell. A cell of kind Erased removes the cell at its place. If put() throws, nothing
     * has changed.
     */
    void put(const Cell &cell);

    /** Sorts the cells, and removes the overwritten and the erased ones. */
    void sort() noexcept;

    /** Returns all cells. Call sort() first. */
    [[nodiscard]] const std::vector<Cell> &all() const { return cells; }

    /** Returns the cell at a place, or null. Call sort() first. */
    [[nodiscard]] const Cell *find(int row, int column) const;

private:
    [[nodiscard]] bool isSorted() const { return sortedEnd == cells.size(); }
    bool replace(const Cell &cell);

    std::vector<Cell> cells;
    std::size_t sortedEnd = 0; // where the unsorted tail begins
    bool holdsErased = false;
};

} // namespace workbook
