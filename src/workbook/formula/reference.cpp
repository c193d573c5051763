#include "workbook/formula/reference.h"

#include "workbook/formula/characters.h"

namespace workbook
{

namespace
{

constexpr int maxRows = 1048576; // of the largest sheet in any format
constexpr int maxColumns = 16384;

bool takeDollar(std::u16string_view &text)
{
    const bool found = !text.empty() && text.front() == u'$';
    text.remove_prefix(found ? 1 : 0);
    return found;
}

/**
 * Returns whether a reference can end before `rest`. It cannot if `rest` extends the reference to a
 * longer name: "LOG10" is a reference, but "LOG10(" begins a function call, and "A1!" names a
 * sheet.
 */
bool referenceEndsBefore(std::u16string_view rest)
{
    constexpr std::u16string_view partsOfNames = u"(!._$[";
    return rest.empty() ||
           (rest.front() < 0x80 && !isLetter(rest.front()) && !isDigit(rest.front()) &&
            partsOfNames.find(rest.front()) == std::u16string_view::npos);
}

} // namespace

std::optional<CellReference> takeReference(std::u16string_view &text)
{
    constexpr std::size_t maxLetters = 3;
    constexpr std::size_t maxDigits = 7;
    CellReference cell;
    cell.fixedColumn = takeDollar(text);
    const std::u16string_view letters = takeWhile(text, isLetter);
    cell.fixedRow = takeDollar(text);
    const std::u16string_view digits = takeWhile(text, isDigit);
    if (letters.empty() || letters.size() > maxLetters || digits.size() > maxDigits)
        return std::nullopt;
    for (const char16_t letter : letters)
        cell.column = cell.column * 26 + (upper(letter) - 'A' + 1);
    for (const char16_t digit : digits)
        cell.row = cell.row * 10 + (digit - u'0');
    --cell.column;
    --cell.row;
    const bool exists = cell.row >= 0 && cell.row < maxRows && cell.column < maxColumns;
    return exists && referenceEndsBefore(text) ? std::optional(cell) : std::nullopt;
}

} // namespace workbook
