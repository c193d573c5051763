#pragma once

#include "workbook/engine/handle.h"
#include "workbook/format.h"

namespace workbook
{

/** Implements IFormatT: checks arguments and changes a format of the model. */
class FormatImpl final : public libxl::IFormatT<wchar_t>, public Handle
{
public:
    using Handle::Handle;

    bool setFont(libxl::IFontT<wchar_t> *font) override;
    void setNumFormat(int numFormat) override;
    void setAlignH(libxl::AlignH align) override;
    void setAlignV(libxl::AlignV align) override;
    void setWrap(bool wrap) override;
    void setBorder(libxl::BorderStyle style) override;
    void setBorderColor(libxl::Color colour) override;
    void setBorderLeft(libxl::BorderStyle style) override;
    void setBorderRight(libxl::BorderStyle style) override;
    void setBorderTop(libxl::BorderStyle style) override;
    void setBorderBottom(libxl::BorderStyle style) override;

private:
    FormatData &data() { return book.formats[index]; }
    void setSide(Side side, libxl::BorderStyle style);
};

} // namespace workbook
