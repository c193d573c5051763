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
 * Cells, rows and columns may be written in any order; the last write wins. If `format` is null,
 * the default format is used; otherwise, `format` must belong to the sheet's book. If an argument
 * is out of range, functions return false, or ignore the call if they return nothing.
 *
 * Even in binary books, the characters that XML cannot represent are removed from all texts: lone
 * surrogates, U+FFFE, U+FFFF, and characters below U+0020 except tab, line feed and carriage
 * return.
 *
 * If a function that writes a cell returns false, the cell becomes empty, even if it had content
 * before. All other cells are unchanged. After a cell was not written for lack of memory, save()
 * fails.
 */
template <class Char>
class ISheetT
{
public:
    /**
     * Writes a text, which may be empty. Returns false if `value` is null or longer than 32,767
     * UTF-16 units, or if `type` is not CellType::String.
     */
    virtual bool writeStr(int row, int col, const Char *value, IFormatT<Char> *format = nullptr,
                          CellType type = CellType::String) = 0;

    /** Writes a number, which must be finite. */
    virtual bool writeNum(int row, int col, double value, IFormatT<Char> *format = nullptr) = 0;

    /** Writes a cell that has a format, such as borders, but no value. */
    virtual bool writeBlank(int row, int col, IFormatT<Char> *format = nullptr) = 0;

    /**
     * Writes a formula in A1 notation, with English function names. A leading "=" is optional. The
     * file also contains the formula's value if the engine can compute it; otherwise, spreadsheet
     * programs compute the value when they open the file.
     *
     * Returns false if the formula is null or if, without the "=", it is empty or longer than 8,192
     * UTF-16 units. An XML book accepts any other text unchecked. In a binary book, a formula must
     * consist of numbers, the operators + - * /, signs, parentheses and references to cells of the
     * same sheet. At most 63 signs and parentheses may be nested, and the formula must take at most
     * 1,800 bytes in the file.
     */
    virtual bool writeFormula(int row, int col, const Char *expr,
                              IFormatT<Char> *format = nullptr) = 0;

    /**
     * Sets the width of columns `colFirst` to `colLast`, both included. `width` (0 to 255) is the
     * width that spreadsheet programs show: in digits of the default font, without the cell's
     * padding. `format` applies to the unwritten cells of these columns.
     */
    virtual bool setCol(int colFirst, int colLast, double width, IFormatT<Char> *format = nullptr,
                        bool hidden = false) = 0;

    /**
     * Sets the height of a row in points, 0.1 to 409.5. `format` applies to the unwritten cells of
     * the row.
     */
    virtual bool setRow(int row, double height, IFormatT<Char> *format = nullptr,
                        bool hidden = false) = 0;

    /** Freezes the rows above `row` and the columns left of `col`; (0, 0) freezes nothing. */
    virtual void split(int row, int col) = 0;

    /** Sets whether gridlines are shown on the screen. Default: true. */
    virtual void setDisplayGridlines(bool show) = 0;

    /** Sets whether gridlines are printed. Default: false. */
    virtual void setPrintGridlines(bool print) = 0;

    /**
     * Scales the printed sheet to fit `wPages` pages in width and `hPages` pages in height. Both
     * numbers must be 0 to 32,767; 0 means as many pages as needed.
     */
    virtual void setPrintFit(int wPages, int hPages) = 0;

    virtual void setLandscape(bool landscape) = 0;

    /**
     * Sets the footer of each page. In the text, "&P" is the page number and "&N" the number of
     * pages. `margin` is the distance of the text from the edge of the paper in inches, from 0 to
     * below 49. Returns false and changes nothing if the margin is out of range, or if the text is
     * null or longer than 255 UTF-16 units.
     */
    virtual bool setFooter(const Char *footer, double margin) = 0;

    /** Set margins in inches, from 0 to below 49. Defaults: 0.7 left and right, 0.75 top. */
    virtual void setMarginLeft(double margin) = 0;
    virtual void setMarginRight(double margin) = 0;
    virtual void setMarginTop(double margin) = 0;

    /** Repeats rows `rowFirst` to `rowLast`, both included, at the top of every printed page. */
    virtual void setPrintRepeatRows(int rowFirst, int rowLast) = 0;

protected:
    ~ISheetT() = default;
};

} // namespace libxl
