#include "workbook/writing/styletable.h"

#include <map>
#include <tuple>

namespace workbook
{

namespace
{

auto identity(const FontData &font)
{
    return std::make_tuple(font.name, font.points, font.bold);
}

auto identity(const FormatData &format)
{
    return std::make_tuple(format.font, format.numFormat, format.alignH, format.alignV, format.wrap,
                           format.borders, format.borderColours);
}

/** Collects distinct values in a list. place() returns the index of a value in the list. */
template <class Value>
class Distinct
{
public:
    explicit Distinct(std::vector<Value> &list)
        : values(list)
    {
    }

    std::size_t place(const Value &value)
    {
        const auto [known, isNew] = places.try_emplace(identity(value), values.size());
        if (isNew)
            values.push_back(value);
        return known->second;
    }

private:
    std::vector<Value> &values;
    std::map<decltype(identity(std::declval<Value>())), std::size_t> places;
};

} // namespace

StyleTable::StyleTable(const BookData &book)
{
    std::vector<std::uint32_t> fontIndexes;
    Distinct<FontData> fontPlaces(distinctFonts);
    for (const FontData &font : book.fonts)
        fontIndexes.push_back(static_cast<std::uint32_t>(fontPlaces.place(font)));

    Distinct<FormatData> formatPlaces(distinctFormats);
    for (FormatData format : book.formats) {
        format.font = fontIndexes[format.font];
        for (const Side side : {Left, Right, Top, Bottom}) {
            // The colour of a side without a line is not visible. Reset it, so that formats that
            // look the same are equal.
            if (format.borders.at(side) == libxl::BorderStyle::None)
                format.borderColours.at(side) = libxl::Color::Automatic;
        }
        formatIndexes.push_back(formatPlaces.place(format));
    }
}

} // namespace workbook
