#pragma once

namespace libxl
{

/**
 * A font of a book, obtained from IBookT::addFont.
 *
 * It belongs to the book and lives until the book is released. A change affects every format that
 * uses the font, and every cell that uses such a format, even if it is already written.
 */
template <class Char>
class IFontT
{
public:
    virtual void setBold(bool bold) = 0;

protected:
    ~IFontT() = default;
};

} // namespace libxl
