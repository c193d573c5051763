#pragma once

#include "workbook/engine/handle.h"
#include "workbook/sheet.h"

#include <cstdint>
#include <optional>
#include <string>

namespace workbook
{

/** Implements ISheetT: checks arguments and changes a sheet of the model. */
class SheetImpl final : public libxl::ISheetT<wchar_t>, public Handle
{
public:
    using Handle::Handle;

    bool writeStr(int row, int col, const wchar_t *value, libxl::IFormatT<wchar_t> *format,
                  libxl::CellType type) override;
    bool writeNum(int row, int col, double value, libxl::IFormatT<wchar_t> *format) override;
    bool writeBlank(int row, int col, libxl::IFormatT<wchar_t> *format) override;
    bool writeFormula(int row, int col, const wchar_t *expr,
                      libxl::IFormatT<wchar_t> *format) override;
    bool setCol(int colFirst, int colLast, double width, libxl::IFormatT<wchar_t> *format,
                bool hidden) override;
    bool setRow(int row, double height, libxl::IFormatT<wchar_t> *format, bool hidden) override;
    void split(int row, int col) override;
    void setDisplayGridlines(bool show) override;
    void setPrintGridlines(bool print) override;
    void setPrintFit(int wPages, int hPages) override;
    void setLandscape(bool landscape) override;
    bool setFooter(const wchar_t *footer, double margin) override;
    void setMarginLeft(double margin) override;
    void setMarginRight(double margin) override;
    void setMarginTop(double margin) override;
    void setPrintRepeatRows(int rowFirst, int rowLast) override;

private:
    SheetData &data() { return book.sheets[index]; }
    [[nodiscard]] bool isRow(int row) const { return row >= 0 && row < book.format.rows; }
    [[nodiscard]] bool isColumn(int col) const { return col >= 0 && col < book.format.columns; }
    std::optional<std::uint32_t> formatIndex(libxl::IFormatT<wchar_t> *format) const;
    template <class Fill>
    bool writeCell(int row, int col, libxl::IFormatT<wchar_t> *format, Fill fill);

    std::u16string scratch; // the text being written; reused to save allocations
};

} // namespace workbook
