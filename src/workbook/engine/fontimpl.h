#pragma once

#include "workbook/font.h"
#include "workbook/model/model.h"

namespace workbook
{

/** A font of the model, as the interface shows it. */
class FontImpl final : public libxl::IFontT<wchar_t>
{
public:
    FontImpl(BookData &owner, std::uint32_t number)
        : book(owner)
        , index(number)
    {
    }

    void setBold(bool bold) override { book.fonts[index].bold = bold; }

    BookData &book;
    const std::uint32_t index;
};

} // namespace workbook
