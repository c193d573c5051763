#pragma once

#include "workbook/formula/evaluator.h"
#include "workbook/writing/sheetlayout.h"

#include <cstdint>
#include <vector>

namespace workbook
{

class RecordWriter;
class SharedStrings;
class StyleTable;

constexpr int xlsBlockRows = 32;

/**
 * Writes the rows and cells of a sheet in blocks of 32 rows. A block consists of the ROW records,
 * the cells of these rows, and a DBCELL record with the distances to these records.
 */
class XlsCells
{
public:
    XlsCells(const BookData &bookData, const SheetData &sheetData, const StyleTable &styleTable,
             const SharedStrings &sharedStrings, RecordWriter &writer);

    /**
     * Writes all rows and cells. Returns the positions of the DBCELL records, one for each block,
     * in ascending order.
     */
    std::vector<std::uint32_t> write(unsigned defaultRowTwips);

private:
    void writeBlock(unsigned defaultRowTwips);
    void row(const RowSpan &span, unsigned defaultRowTwips);
    void cells(const RowSpan &span);
    void cell(const Cell &cell);
    void blanks(const Cell *begin, const Cell *end);
    void number(const Cell &cell);
    void formula(const Cell &cell);
    RecordWriter &beginCell(unsigned id, const Cell &cell);
    [[nodiscard]] unsigned formatOf(std::uint32_t modelFormat) const;
    [[nodiscard]] bool isBlank(const Cell &cell) const;

    const BookData &book;
    const SheetData &sheet;
    const StyleTable &styles;
    const SharedStrings &strings;
    RecordWriter &out;
    Evaluator evaluator;
    std::vector<RowSpan> block;           // the rows of the block that is written next
    std::vector<std::uint32_t> blockEnds; // the positions of the DBCELL records
};

} // namespace workbook
