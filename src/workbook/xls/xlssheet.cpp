#include "workbook/xls/xlssheet.h"

#include "workbook/writing/columnwidth.h"
#include "workbook/writing/sheetlayout.h"
#include "workbook/writing/styletable.h"
#include "workbook/xls/records.h"
#include "workbook/xls/recordwriter.h"
#include "workbook/xls/xlscells.h"
#include "workbook/xls/xlsglobals.h"
#include "workbook/xls/xlspage.h"
#include "workbook/xls/xlsstyles.h"

#include <algorithm>
#include <cmath>

namespace workbook
{

namespace
{

/** The range of rows that have cells or settings: [begin, end). */
struct RowRange {
    int begin = 0;
    int end = 0;
};

RowRange rowRange(const SheetData &sheet)
{
    RowRange range;
    if (const auto used = usedRange(sheet))
        range = {used->firstRow, used->lastRow + 1};
    if (sheet.rows.empty())
        return range;
    const int first = sheet.rows.begin()->first;
    const int end = sheet.rows.rbegin()->first + 1;
    return range.end == 0 ? RowRange{first, end}
                          : RowRange{std::min(range.begin, first), std::max(range.end, end)};
}

// INDEX: u32 0, u32 first row, u32 last row + 1, u32 position of DEFCOLWIDTH, then for each block
//        of rows: u32 position of the DBCELL
constexpr std::uint32_t indexHead = 12; // the bytes before the positions

/** Writes INDEX with zeros for the positions. Returns where the positions must be filled in. */
std::uint32_t reserveIndex(const RowRange &rows, RecordWriter &out)
{
    const std::uint32_t at = out.position();
    const int blocks = (rows.end - rows.begin + xlsBlockRows - 1) / xlsBlockRows;
    out.begin(record::Index)
        .u32(0)
        .u32(static_cast<std::uint32_t>(rows.begin))
        .u32(static_cast<std::uint32_t>(rows.end));
    for (int i = 0; i <= blocks; ++i)
        out.u32(0);
    out.end();
    return at + recordHead + indexHead;
}

// COLINFO: u16 first, u16 last column, u16 width in 1/256 of a digit, u16 format, u16 flags, u16 0
void columns(const BookData &book, const SheetData &sheet, const StyleTable &styles,
             RecordWriter &out)
{
    constexpr double steps = 256;
    const int digit = digitPixels(book.fonts.front());
    for (const ColumnRun &run : columnRuns(sheet))
        out.begin(record::ColInfo)
            .u16(static_cast<unsigned>(run.first))
            .u16(static_cast<unsigned>(run.last))
            .u16(static_cast<unsigned>(storedColumnWidth(run.data.widthChars, digit) * steps))
            .u16(xlsFormatIndex(styles.indexOf(run.data.format)))
            .u16(run.data.hidden ? 1 : 0)
            .u16(0)
            .end();
}

// DIMENSIONS: u32 first row, u32 last row + 1, u16 first column, u16 last column + 1, u16 0
void dimensions(const SheetData &sheet, RecordWriter &out)
{
    const UsedRange used = usedRange(sheet).value_or(UsedRange{0, -1, 0, -1});
    out.begin(record::Dimensions)
        .u32(static_cast<std::uint32_t>(used.firstRow))
        .u32(static_cast<std::uint32_t>(used.lastRow + 1))
        .u16(static_cast<unsigned>(used.firstColumn))
        .u16(static_cast<unsigned>(used.lastColumn + 1))
        .u16(0)
        .end();
}

} // namespace

void writeXlsSheet(const BookData &book, const SheetData &sheet, const StyleTable &styles,
                   const SharedStrings &strings, bool isFirst, RecordWriter &out)
{
    constexpr unsigned defaultColumnChars = 8;
    const auto rowTwips =
        static_cast<unsigned>(std::lround(defaultRowPoints(book.fonts.front()) * twipsPerPoint));
    writeXlsBegin(XlsPart::Sheet, out);
    const std::uint32_t indexAt = reserveIndex(rowRange(sheet), out);
    writeXlsPage(sheet, rowTwips, out);
    Buffer index;
    index.u32(out.position());
    out.single(record::DefColWidth, defaultColumnChars);
    columns(book, sheet, styles, out);
    dimensions(sheet, out);
    for (const std::uint32_t end : XlsCells(book, sheet, styles, strings, out).write(rowTwips))
        index.u32(end);
    writeXlsView(sheet, isFirst, out);
    out.begin(record::Eof).end();
    out.patch(indexAt, index.view());
}

} // namespace workbook
