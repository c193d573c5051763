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
    void setKind(CellKind kind) { kindCode = static_cast<unsigned>(kind) & 0xFU; }

    /** Ascending keys are the order of the files: by row, then by column. */
    [[nodiscard]] std::uint64_t key() const { return (std::uint64_t{row} << 14U) | column; }
};

static_assert(sizeof(Cell) == 16);

Cell makeCell(int row, int column, CellKind kind, std::uint32_t format = 0);

/**
 * The cells of a sheet. They may come in any order and the last write to a place wins.
 *
 * Cells that come in the order of the files stay as they are, and so does what replaces one of
 * them. All others wait behind them, in the order of their arrival, and are merged when they are as
 * many: the time per cell grows with the logarithm of their number at most.
 */
class CellStore
{
public:
    /** A cell of kind Erased takes away what was there. When this throws, nothing has changed. */
    void put(const Cell &cell);

    /** Brings the cells into the order of the files, one for each place, without erased ones. */
    void sort() noexcept;

    /** As sort() left them. */
    [[nodiscard]] const std::vector<Cell> &all() const { return cells; }

    /** The cell at a place or null; only right after sort(). */
    [[nodiscard]] const Cell *find(int row, int column) const;

private:
    [[nodiscard]] bool isSorted() const { return sortedEnd == cells.size(); }
    bool replace(const Cell &cell);

    std::vector<Cell> cells;
    std::size_t sortedEnd = 0; // from here on in the order of arrival
    bool holdsErased = false;
};

} // namespace workbook
