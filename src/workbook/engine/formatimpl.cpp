#include "workbook/engine/formatimpl.h"

#include "workbook/engine/fontimpl.h"

namespace workbook
{

namespace
{

/**
 * Returns whether `value` is between 0 and `last`, the last enumerator. A caller can cast any
 * number to `Enum`, but files must contain only enumerators.
 */
template <class Enum>
bool isWithin(Enum value, Enum last)
{
    return static_cast<int>(value) >= 0 && value <= last;
}

} // namespace

bool FormatImpl::setFont(libxl::IFontT<wchar_t> *font)
{
    const auto *handle = static_cast<FontImpl *>(font);
    if (handle == nullptr || !isUsableIn(handle, book))
        return false;
    data().font = handle->index;
    return true;
}

void FormatImpl::setNumFormat(int numFormat)
{
    const int end = firstOwnNumFormat + static_cast<int>(book.numFormats.size());
    if (numFormat == 0 || (numFormat >= firstOwnNumFormat && numFormat < end))
        data().numFormat = numFormat;
}

void FormatImpl::setAlignH(libxl::AlignH align)
{
    if (isWithin(align, libxl::AlignH::Distributed))
        data().alignH = align;
}

void FormatImpl::setAlignV(libxl::AlignV align)
{
    if (isWithin(align, libxl::AlignV::Distributed))
        data().alignV = align;
}

void FormatImpl::setWrap(bool wrap)
{
    data().wrap = wrap;
}

void FormatImpl::setBorder(libxl::BorderStyle style)
{
    for (const Side side : {Left, Right, Top, Bottom})
        setSide(side, style);
}

void FormatImpl::setBorderColor(libxl::Color colour)
{
    if (colour >= libxl::Color::Black && colour <= libxl::Color::Automatic)
        data().borderColours.fill(colour);
}

void FormatImpl::setBorderLeft(libxl::BorderStyle style)
{
    setSide(Left, style);
}

void FormatImpl::setBorderRight(libxl::BorderStyle style)
{
    setSide(Right, style);
}

void FormatImpl::setBorderTop(libxl::BorderStyle style)
{
    setSide(Top, style);
}

void FormatImpl::setBorderBottom(libxl::BorderStyle style)
{
    setSide(Bottom, style);
}

void FormatImpl::setSide(Side side, libxl::BorderStyle style)
{
    if (isWithin(style, libxl::BorderStyle::SlantedDashDot))
        data().borders.at(side) = style;
}

} // namespace workbook
