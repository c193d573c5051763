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
    return inches >= 0 && inches < marginLimitInches; // false also for NaN
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
    const auto *handle = static_cast<FormatImpl *>(format);
    return isUsableIn(handle, book) ? std::optional(handle->index) : std::nullopt;
}

/**
 * Writes a cell. `fill` sets the kind and the value of the cell. If `fill` returns false, or if the
 * format belongs to another book, the cell becomes empty.
 */
template <class Fill>
bool SheetImpl::writeCell(int row, int col, libxl::IFormatT<wchar_t> *format, Fill fill)
{
    if (!isRow(row) || !isColumn(col))
        return false;
    bool filled = false;
    const bool survived = guarded([&] {
        const std::optional<std::uint32_t> formatNumber = formatIndex(format);
        Cell cell = makeCell(row, col, CellKind::Erased, formatNumber.value_or(0));
        filled = formatNumber.has_value() && fill(cell);
        data().cells.put(filled ? cell : makeCell(row, col, CellKind::Erased));
    });
    book.ranOut = book.ranOut || !survived;
    return survived && filled;
}

bool SheetImpl::writeStr(int row, int col, const wchar_t *value, libxl::IFormatT<wchar_t> *format,
                         libxl::CellType type)
{
    return writeCell(row, col, format, [&](Cell &cell) {
        if (type != libxl::CellType::String || !readText(value, maxTextUnits, scratch))
            return false;
        cell.setKind(CellKind::Text);
        cell.index = book.strings.intern(scratch);
        return true;
    });
}

bool SheetImpl::writeNum(int row, int col, double value, libxl::IFormatT<wchar_t> *format)
{
    return writeCell(row, col, format, [&](Cell &cell) {
        cell.setKind(CellKind::Number);
        cell.number = value == 0 ? 0 : value; // files contain 0 instead of -0
        return std::isfinite(value);
    });
}

bool SheetImpl::writeBlank(int row, int col, libxl::IFormatT<wchar_t> *format)
{
    return writeCell(row, col, format, [](Cell &cell) {
        cell.setKind(CellKind::Blank);
        return true;
    });
}

bool SheetImpl::writeFormula(int row, int col, const wchar_t *expr,
                             libxl::IFormatT<wchar_t> *format)
{
    return writeCell(row, col, format, [&](Cell &cell) {
        if (!readText(expr, maxFormulaUnits + 1, scratch))
            return false;
        if (!scratch.empty() && scratch.front() == u'=')
            scratch.erase(0, 1);
        if (scratch.empty() || scratch.size() > maxFormulaUnits ||
            !book.format.acceptsFormula(scratch))
            return false;
        cell.setKind(CellKind::Formula);
        cell.index = book.formulas.intern(scratch);
        return true;
    });
}

bool SheetImpl::setCol(int colFirst, int colLast, double width, libxl::IFormatT<wchar_t> *format,
                       bool hidden)
{
    const auto formatNumber = formatIndex(format);
    if (!isColumn(colFirst) || !isColumn(colLast) || colFirst > colLast || !formatNumber ||
        !(width >= 0 && width <= maxColumnChars))
        return false;
    return guarded(false, [&] {
        for (int col = colFirst; col <= colLast; ++col)
            data().columns[col] = {width, *formatNumber, hidden};
        return true;
    });
}

bool SheetImpl::setRow(int row, double height, libxl::IFormatT<wchar_t> *format, bool hidden)
{
    const auto formatNumber = formatIndex(format);
    if (!isRow(row) || !formatNumber || !(height >= minRowPoints && height <= maxRowPoints))
        return false;
    return guarded(false, [&] {
        data().rows[row] = {height, *formatNumber, hidden};
        return true;
    });
}

void SheetImpl::split(int row, int col)
{
    if (!isRow(row) || !isColumn(col))
        return;
    data().frozenRows = row;
    data().frozenColumns = col;
}

void SheetImpl::setDisplayGridlines(bool show)
{
    data().showGridlines = show;
}

void SheetImpl::setPrintGridlines(bool print)
{
    data().printGridlines = print;
}

void SheetImpl::setPrintFit(int wPages, int hPages)
{
    const auto isPages = [](int pages) {
        return pages >= 0 && pages <= maxPages;
    };
    if (isPages(wPages) && isPages(hPages))
        data().fit = PrintFit{wPages, hPages};
}

void SheetImpl::setLandscape(bool landscape)
{
    data().landscape = landscape;
}

bool SheetImpl::setFooter(const wchar_t *footer, double margin)
{
    return guarded(false, [&] {
        if (!isMargin(margin) || !readText(footer, maxFooterUnits, scratch))
            return false;
        data().footer = scratch;
        data().margins.footer = margin;
        return true;
    });
}

void SheetImpl::setMarginLeft(double margin)
{
    setMargin(data().margins.left, margin);
}

void SheetImpl::setMarginRight(double margin)
{
    setMargin(data().margins.right, margin);
}

void SheetImpl::setMarginTop(double margin)
{
    setMargin(data().margins.top, margin);
}

void SheetImpl::setPrintRepeatRows(int rowFirst, int rowLast)
{
    if (isRow(rowFirst) && isRow(rowLast) && rowFirst <= rowLast)
        data().repeatRows = {rowFirst, rowLast};
}

} // namespace workbook
