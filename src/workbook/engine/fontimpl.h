#pragma once

#include "workbook/engine/handle.h"
#include "workbook/font.h"

namespace workbook
{

/** A font of the model, as the interface shows it. */
class FontImpl final : public libxl::IFontT<wchar_t>, public Handle
{
public:
    using Handle::Handle;

    void setBold(bool bold) override { book.fonts[index].bold = bold; }
};

} // namespace workbook
