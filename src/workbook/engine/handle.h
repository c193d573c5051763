#pragma once

#include "workbook/model/model.h"

#include <cstddef>
#include <cstdint>

namespace workbook
{

/**
 * The base class of SheetImpl, FormatImpl and FontImpl. Refers to one sheet, format or font in the
 * model of a book.
 */
class Handle
{
public:
    Handle(BookData &owner, std::size_t place)
        : book(owner)
        , index(static_cast<std::uint32_t>(place))
    {
    }

    BookData &book;
    const std::uint32_t index;
};

/** Returns whether `handle` belongs to `book` or is null. */
inline bool isUsableIn(const Handle *handle, const BookData &book)
{
    return handle == nullptr || &handle->book == &book;
}

} // namespace workbook
