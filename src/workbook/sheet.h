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
 * Cells, rows and columns may be written in any order; the last write wins. `format` may be null,
 * for the default look; otherwise it must belong to the same book. Functions that return nothing
 * ignore a call with an argument outside its range.
 *
 * Texts lose all characters that XML cannot represent, even in binary books: characters below
 * U+0020 except tab, line feed and carriage return, lone surrogates, U+FFFE and U+FFFF.
 *
 * If a function that writes a cell returns false, that cell is empty, even if it had content
 * before; all other cells are unchanged. If it ran out of memory, the book can no longer be saved.
 */
template <class Char>
class ISheetT
{
public:
    /**
     * Writes a text of up to 32,767 UTF-16 units; it may be empty. Refuses null and longer text.
     * `type` must be CellType::String.
     */
    virtual bool writeStr(int row, int col, const Char *value, IFormatT<Char> *format = nullptr,
                          CellType type = CellType::String) = 0;

    /** Writes a number, which must be finite. */
    virtual bool writeNum(int row, int col, double value, IFormatT<Char> *format = nullptr) = 0;

    /** Writes a cell that has a format, such as borders, but no value. */
    virtual bool writeBlank(int row, int col, IFormatT<Char> *format = nullptr) = 0;

    /**
     * Writes a formula of up to 8,192 UTF-16 units in A1 notation, with English function names and
     * with or without a leading "=". Spreadsheet programs calculate it when they open the file.
     * Refuses null, empty text and longer text. An XML book accepts any other text unchecked. A
     * binary book accepts only what it can translate: cells of the same sheet, numbers, + - * /,
     * signs and parentheses, nested at most 63 deep and no longer than 1,800 bytes when translated.
     */
    virtual bool writeFormula(int row, int col, const Char *expr,
                              IFormatT<Char> *format = nullptr) = 0;

    /**
     * Sets the width of columns `colFirst` to `colLast`, both included. `width` (0 to 255) is the
     * width that spreadsheet programs show: in digits of the default font, without the cell's
     * padding. `format` applies to cells of these columns that are not written.
     */
    virtual bool setCol(int colFirst, int colLast, double width, IFormatT<Char> *format = nullptr,
                        bool hidden = false) = 0;

    /** Sets the height of a row in points, 0.1 to 409.5. `format` is as for setCol. */
    virtual bool setRow(int row, double height, IFormatT<Char> *format = nullptr,
                        bool hidden = false) = 0;

    /** Freezes the rows above `row` and the columns left of `col`; (0, 0) freezes nothing. */
    virtual void split(int row, int col) = 0;

    /** Sets whether gridlines are shown on the screen. By default they are. */
    virtual void setDisplayGridlines(bool show) = 0;

    /** Sets whether gridlines are printed. By default they are not. */
    virtual void setPrintGridlines(bool print) = 0;

    /**
     * Scales printing to fit a number of pages in width and height (0 to 32,767); 0 means as many
     * as needed.
     */
    virtual void setPrintFit(int wPages, int hPages) = 0;

    virtual void setLandscape(bool landscape) = 0;

    /**
     * Sets the text at the foot of each page, up to 255 UTF-16 units: "&P" is the page, "&N" the
     * number of pages. `margin` is the text's distance from the paper's edge in inches, from 0 to
     * below 49. Returns false and changes nothing if an argument is out of range.
     */
    virtual bool setFooter(const Char *footer, double margin) = 0;

    /** Set margins in inches, 0 to below 49. Defaults: 0.7 left and right, 0.75 top and bottom. */
    virtual void setMarginLeft(double margin) = 0;
    virtual void setMarginRight(double margin) = 0;
    virtual void setMarginTop(double margin) = 0;

    /** Prints rows `rowFirst` to `rowLast`, both included, at the top of every page. */
    virtual void setPrintRepeatRows(int rowFirst, int rowLast) = 0;

protected:
    ~ISheetT() = default;
};

} // namespace libxl
