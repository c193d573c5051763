#include "workbook/engine/sheetimpl.h"

#include "workbook/engine/formatimpl.h"
#include "workbook/engine/guarded.h"
#include "workbook/model/text.h"
#include "workbook/writing/columnwidth.h"

#include <cmath>

namespace workbook
{

namespace
{

constexpr std::size_t maxTextUnits = 32767;
constexpr std::size_t maxFormulaUnits = 8192;
constexpr std::size_t maxFooterUnits = 255;
constexpr double maxColumnChars = 255;
constexpr double marginLimitInches = 49;
constexpr int maxPages = 32767;

bool isMargin(double inches)
{
    return inches >= 0 && inches < marginLimitInches; // false for what is not a number, too
}

void setMargin(double &margin, double inches)
{
    if (isMargin(inches))
        margin = inches;
}

} // namespace

std::optional<std::uint32_t> SheetImpl::formatIndex(libxl::IFormatT<wchar_t> *format) const
{
    if (format == nullptr)
        return 0;
    const auto *own = static_cast<FormatImpl *>(format);
    if (&own->book != &book)
        return std::nullopt;
    return own->index;
}

/**
 * Puts a cell into its place. `fill` gives it kind and value; where it answers false, or the
 * format is not this book's, the place is left empty.
 */
template <class Fill>
bool SheetImpl::writeCell(int row, int col, libxl::IFormatT<wchar_t> *format, Fill fill)
{
    if (row >= fileFormat.rows || col >= fileFormat.columns)
        book.incomplete = true;
    if (!isRow(row) || !isColumn(col))
        return false;
    bool filled = false;
    const bool survived = guarded(false, [&] {
        const std::optional<std::uint32_t> index = formatIndex(format);
        Cell cell = makeCell(row, col, CellKind::Erased, index.value_or(0));
        filled = index.has_value() && fill(cell);
        sheet.cells.put(filled ? cell : makeCell(row, col, CellKind::Erased));
        return true;
    });
    book.incomplete = book.incomplete || !survived;
    return survived && filled;
}

bool SheetImpl::writeStr(int row, int col, const wchar_t *value, libxl::IFormatT<wchar_t> *format,
                         libxl::CellType type)
{
    return writeCell(row, col, format, [&](Cell &cell) {
        if (type != libxl::CellType::String || !readText(value, maxTextUnits, scratch) ||
            !isXmlText(scratch))
            return false;
        cell.kindCode = static_cast<unsigned>(CellKind::Text) & 0xFU;
        cell.index = book.strings.intern(scratch);
        return true;
    });
}

bool SheetImpl::writeNum(int row, int col, double value, libxl::IFormatT<wchar_t> *format)
{
    return writeCell(row, col, format, [&](Cell &cell) {
        cell.kindCode = static_cast<unsigned>(CellKind::Number) & 0xFU;
        cell.number = value == 0 ? 0 : value; // no file tells -0 from 0
        return std::isfinite(value);
    });
}

bool SheetImpl::writeBlank(int row, int col, libxl::IFormatT<wchar_t> *format)
{
    return writeCell(row, col, format, [](Cell &cell) {
        cell.kindCode = static_cast<unsigned>(CellKind::Blank) & 0xFU;
        return true;
    });
}

bool SheetImpl::writeFormula(int row, int col, const wchar_t *expr,
                             libxl::IFormatT<wchar_t> *format)
{
    return writeCell(row, col, format, [&](Cell &cell) {
        if (!readText(expr, maxFormulaUnits + 1, scratch) || !isXmlText(scratch))
            return false;
        if (!scratch.empty() && scratch.front() == u'=')
            scratch.erase(0, 1);
        if (scratch.empty() || scratch.size() > maxFormulaUnits ||
            !fileFormat.acceptsFormula(scratch))
            return false;
        cell.kindCode = static_cast<unsigned>(CellKind::Formula) & 0xFU;
        cell.index = book.formulas.intern(scratch);
        return true;
    });
}

bool SheetImpl::setCol(int colFirst, int colLast, double width, libxl::IFormatT<wchar_t> *format,
                       bool hidden)
{
    const auto index = formatIndex(format);
    if (!isColumn(colFirst) || !isColumn(colLast) || colFirst > colLast || !index ||
        !(width >= 0 && width <= maxColumnChars))
        return false;
    return guarded(false, [&] {
        for (int col = colFirst; col <= colLast; ++col)
            sheet.columns[col] = {width, *index, hidden};
        return true;
    });
}

bool SheetImpl::setRow(int row, double height, libxl::IFormatT<wchar_t> *format, bool hidden)
{
    const auto index = formatIndex(format);
    if (!isRow(row) || !index || !(height >= minRowPoints && height <= maxRowPoints))
        return false;
    return guarded(false, [&] {
        sheet.rows[row] = {height, *index, hidden};
        return true;
    });
}

void SheetImpl::split(int row, int col)
{
    if (!isRow(row) || !isColumn(col))
        return;
    sheet.frozenRows = row;
    sheet.frozenColumns = col;
}

void SheetImpl::setDisplayGridlines(bool show)
{
    sheet.showGridlines = show;
}

void SheetImpl::setPrintGridlines(bool print)
{
    sheet.printGridlines = print;
}

void SheetImpl::setPrintFit(int wPages, int hPages)
{
    const auto isPages = [](int pages) {
        return pages >= 0 && pages <= maxPages;
    };
    if (isPages(wPages) && isPages(hPages))
        sheet.fit = PrintFit{wPages, hPages};
}

void SheetImpl::setLandscape(bool landscape)
{
    sheet.landscape = landscape;
}

bool SheetImpl::setFooter(const wchar_t *footer, double margin)
{
    return guarded(false, [&] {
        if (!isMargin(margin) || !readText(footer, maxFooterUnits, scratch) || !isXmlText(scratch))
            return false;
        sheet.footer = scratch;
        sheet.margins.footer = margin;
        return true;
    });
}

void SheetImpl::setMarginLeft(double margin)
{
    setMargin(sheet.margins.left, margin);
}

void SheetImpl::setMarginRight(double margin)
{
    setMargin(sheet.margins.right, margin);
}

void SheetImpl::setMarginTop(double margin)
{
    setMargin(sheet.margins.top, margin);
}

void SheetImpl::setPrintRepeatRows(int rowFirst, int rowLast)
{
    if (isRow(rowFirst) && isRow(rowLast) && rowFirst <= rowLast)
        sheet.repeatRows = {rowFirst, rowLast};
}

} // namespace workbook
