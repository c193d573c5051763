#pragma once

#include "workbook/enums.h"

namespace libxl
{

template <class Char>
class IFontT;

/**
 * The appearance of cells, obtained from IBookT::addFormat.
 *
 * A format belongs to the book and lives until the book is released. A change affects every cell
 * that uses the format, including cells that are already written. A new format has the book's
 * default font, the general number format, the alignments General and Bottom, no borders and
 * automatic border colours. Functions ignore values outside the range of an enumeration.
 */
template <class Char>
class IFormatT
{
public:
    /** Returns false and changes nothing if `font` is null or belongs to another book. */
    virtual bool setFont(IFontT<Char> *font) = 0;

    /** Ignores values other than 0 (general) and the results of IBookT::addCustomNumFormat. */
    virtual void setNumFormat(int numFormat) = 0;

    virtual void setAlignH(AlignH align) = 0;
    virtual void setAlignV(AlignV align) = 0;
    virtual void setWrap(bool wrap) = 0;

    /** Sets the style of all four sides. */
    virtual void setBorder(BorderStyle style) = 0;

    /** Sets the colour of all four sides. Only sides that have a style show the colour. */
    virtual void setBorderColor(Color colour) = 0;

    virtual void setBorderLeft(BorderStyle style) = 0;
    virtual void setBorderRight(BorderStyle style) = 0;
    virtual void setBorderTop(BorderStyle style) = 0;
    virtual void setBorderBottom(BorderStyle style) = 0;

protected:
    ~IFormatT() = default;
};

} // namespace libxl
