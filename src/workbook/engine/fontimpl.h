#pragma once

#include "workbook/engine/handle.h"
#include "workbook/font.h"

namespace workbook
{

/** Implements IFontT: changes a font of the model. */
class FontImpl final : public libxl::IFontT<wchar_t>, public Handle
{
public:
    using Handle::Handle;

    void setBold(bool bold) override { book.fonts[index].bold = bold; }
};

} // namespace workbook
