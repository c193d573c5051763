#pragma once

#include "workbook/enums.h"

namespace libxl
{

template <class Char>
class IFormatT;

/**
 * One worksheet of a book, obtained from IBookT::addSheet.
 *
 * It belongs to the book and lives until the book is released. Rows and columns count from 0.
 * Cells, rows and columns may be written in any order; the last write wins. `format` may be null
 * (the default look) and must come from the same book. An operation without a result ignores
 * arguments outside its range.
 *
 * Texts lose the characters that XML cannot hold, in binary books as well, and keep the rest: those
 * below U+0020 other than tab, line feed and carriage return, lone surrogates, U+FFFE and U+FFFF.
 *
 * A cell writer that returns false leaves the cell empty, even if it had content; the others stay.
 */
template <class Char>
class ISheetT
{
public:
    /**
     * Writes text, also an empty one, up to 32,767 UTF-16 units. Refused: null, longer text, and
     * any other `type`.
     */
    virtual bool writeStr(int row, int col, const Char *value, IFormatT<Char> *format = nullptr,
                          CellType type = CellType::String) = 0;

    /** Writes a number, which must be finite. */
    virtual bool writeNum(int row, int col, double value, IFormatT<Char> *format = nullptr) = 0;

    /** Writes no value, but keeps the format: borders show. */
    virtual bool writeBlank(int row, int col, IFormatT<Char> *format = nullptr) = 0;

    /**
     * Writes a formula in A1 notation, with English function names, up to 8,192 UTF-16 units;
     * a leading "=" may be there. Spreadsheet programs calculate it when they open the file.
     * Refused: null, an empty or longer text. An XML book takes any other text unchecked. A binary
     * book takes what it can translate: cells of the same sheet, numbers, + - * /, signs and
     * parentheses.
     */
    virtual bool writeFormula(int row, int col, const Char *expr,
                              IFormatT<Char> *format = nullptr) = 0;

    /**
     * Sets the width of columns `colFirst` to `colLast`, both included. `width` (0 to 255) is what
     * the user of a spreadsheet program sees as the column's width: digits of the default font,
     * without the cell's padding. `format` is for the cells of the columns that are never written.
     */
    virtual bool setCol(int colFirst, int colLast, double width, IFormatT<Char> *format = nullptr,
                        bool hidden = false) = 0;

    /** `height` in points, 0.1 to 409.5. `format` as for setCol. */
    virtual bool setRow(int row, double height, IFormatT<Char> *format = nullptr,
                        bool hidden = false) = 0;

    /** Freezes the rows above `row` and the columns left of `col`; (0, 0) freezes nothing. */
    virtual void split(int row, int col) = 0;

    /** On the screen; a new sheet shows them. */
    virtual void setDisplayGridlines(bool show) = 0;

    /** On paper; a new sheet does not print them. */
    virtual void setPrintGridlines(bool print) = 0;

    /** Scales printing to so many pages (0 to 32,767); 0 is as many as are needed. */
    virtual void setPrintFit(int wPages, int hPages) = 0;

    virtual void setLandscape(bool landscape) = 0;

    /**
     * Text at the foot of each page, up to 255 UTF-16 units: "&P" is the page, "&N" the number of
     * pages. `margin` in inches from the paper's edge, 0 or more and below 49. False changes
     * nothing.
     */
    virtual bool setFooter(const Char *footer, double margin) = 0;

    /** Inches, 0 or more and below 49. A new sheet has 0.7 left and right, 0.75 top and bottom. */
    virtual void setMarginLeft(double margin) = 0;
    virtual void setMarginRight(double margin) = 0;
    virtual void setMarginTop(double margin) = 0;

    /** Prints rows `rowFirst` to `rowLast`, both included, at the top of every page. */
    virtual void setPrintRepeatRows(int rowFirst, int rowLast) = 0;

protected:
    ~ISheetT() = default;
};

} // namespace libxl
