#pragma once

#include "workbook/model/model.h"

#include <cstddef>
#include <cstdint>

namespace workbook
{

/** What every sheet, format and font of the interface is: a place in the model of its book. */
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

/** Whether `handle` may be used with what `book` holds; null may. */
inline bool fits(const Handle *handle, const BookData &book)
{
    return handle == nullptr || &handle->book == &book;
}

} // namespace workbook
