#include "workbook/xls/xlspage.h"

#include "workbook/model/model.h"
#include "workbook/xls/records.h"
#include "workbook/xls/recordwriter.h"

namespace workbook
{

namespace
{

void calculation(RecordWriter &out)
{
    constexpr unsigned iterations = 100;
    constexpr double maxChange = 0.001;
    out.single(record::CalcMode, 1); // automatic
    out.single(record::CalcCount, iterations);
    out.single(record::RefMode, 1); // A1
    out.single(record::Iteration, 0);
    out.begin(record::Delta).f64(maxChange).end();
    out.single(record::SaveRecalc, 1);
}

// SETUP: u16 paper, u16 scale, u16 first page, u16 pages wide, u16 pages high, u16 flags,
//        2 x u16 resolution, f64 header margin, f64 footer margin, u16 copies
void setup(const SheetData &sheet, RecordWriter &out)
{
    constexpr unsigned paperA4 = 9;
    constexpr unsigned percent = 100;
    constexpr unsigned portrait = 2;
    constexpr unsigned dotsPerInch = 600;
    const PrintFit fit = sheet.fit.value_or(PrintFit{1, 1});
    out.begin(record::Setup)
        .u16(paperA4)
        .u16(percent)
        .u16(1)
        .u16(static_cast<unsigned>(fit.width))
        .u16(static_cast<unsigned>(fit.height))
        .u16(sheet.landscape ? 0 : portrait)
        .u16(dotsPerInch)
        .u16(dotsPerInch)
        .f64(sheet.margins.header)
        .f64(sheet.margins.footer)
        .u16(1)
        .end();
}

// SELECTION: u8 pane, u16 row, u16 column, u16 0, u16 number of ranges, u16 first row,
//            u16 last row, u8 first column, u8 last column
void selection(unsigned pane, RecordWriter &out)
{
    out.begin(record::Selection).u8(pane).u16(0).u16(0).u16(0).u16(1);
    out.u16(0).u16(0).u8(0).u8(0).end();
}

} // namespace

void writeXlsPage(const SheetData &sheet, unsigned defaultRowTwips, RecordWriter &out)
{
    constexpr unsigned usualFlags = 0x04C1;
    constexpr unsigned fitToPages = 0x0100;
    calculation(out);
    out.single(record::PrintHeaders, 0);
    out.single(record::PrintGridlines, sheet.printGridlines ? 1 : 0);
    out.single(record::GridSet, 1);
    out.begin(record::Guts).u32(0).u32(0).end();
    out.begin(record::DefaultRowHeight).u16(0).u16(defaultRowTwips).end();
    out.single(record::WsBool, sheet.fit ? usualFlags | fitToPages : usualFlags);
    out.begin(record::Header).end();
    out.begin(record::Footer);
    if (!sheet.footer.empty())
        out.longText(sheet.footer);
    out.end();
    out.single(record::HCenter, 0);
    out.single(record::VCenter, 0);
    out.begin(record::LeftMargin).f64(sheet.margins.left).end();
    out.begin(record::RightMargin).f64(sheet.margins.right).end();
    out.begin(record::TopMargin).f64(sheet.margins.top).end();
    out.begin(record::BottomMargin).f64(sheet.margins.bottom).end();
    setup(sheet, out);
}

// WINDOW2: u16 flags, u16 top row, u16 left column, u16 grid colour, u16 0, 2 x u16 zoom,
//          u32 0
// PANE:    u16 frozen columns, u16 frozen rows, u16 first row of the lower panes,
//          u16 first column of the right panes, u8 active pane, u8 0
void writeXlsView(const SheetData &sheet, bool isFirst, RecordWriter &out)
{
    constexpr unsigned usualFlags = 0x00B4; // headings, zeros, automatic grid colour, outline
    constexpr unsigned gridlines = 0x0002;
    constexpr unsigned frozen = 0x0108; // panes are frozen and were not split before
    constexpr unsigned selectedAndShown = 0x0600;
    constexpr unsigned automaticColour = 0x40;
    enum Pane : unsigned { LowerRight, UpperRight, LowerLeft, UpperLeft };

    const bool rows = sheet.frozenRows > 0;
    const bool columns = sheet.frozenColumns > 0;
    out.begin(record::Window2)
        .u16(usualFlags | (sheet.showGridlines ? gridlines : 0) | (rows || columns ? frozen : 0) |
             (isFirst ? selectedAndShown : 0))
        .u32(0)
        .u16(automaticColour)
        .u16(0)
        .u32(0)
        .u32(0)
        .end();
    if (rows || columns) {
        const Pane active = rows && columns ? LowerRight : rows ? LowerLeft : UpperRight;
        const auto frozenRows = static_cast<unsigned>(sheet.frozenRows);
        const auto frozenColumns = static_cast<unsigned>(sheet.frozenColumns);
        out.begin(record::Pane).u16(frozenColumns).u16(frozenRows);
        out.u16(frozenRows).u16(frozenColumns).u8(active).u8(0).end();
    }
    selection(UpperLeft, out);
    if (columns)
        selection(UpperRight, out);
    if (rows)
        selection(LowerLeft, out);
    if (rows && columns)
        selection(LowerRight, out);
}

} // namespace workbook
