#pragma once

namespace libxl
{

/**
 * A font of a book, obtained from IBookT::addFont.
 *
 * It belongs to the book and lives until the book is released. A change affects every format that
 * uses the font, and thereby cells that are already written.
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
