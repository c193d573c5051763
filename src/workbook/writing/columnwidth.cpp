#include "workbook/writing/columnwidth.h"

#include "workbook/model/model.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace workbook
{

namespace
{

constexpr double pixelsPerPoint = 96.0 / 72.0;
constexpr double paddingPixels = 5;
constexpr double maxStoredWidth = 255;
constexpr double steps = 256; // files store widths in 1/256 of a digit

struct DigitWidth {
    std::u16string_view fontNamePrefix;
    double ofHeight; // the width of a digit divided by the height of the font
};

// The ratios were measured with metric-compatible fonts. Other fonts are assumed to be as wide as
// Arial. For Tahoma, this assumption gives the right number of pixels at all usual sizes. The font
// of the reports, "MS Shell Dlg 2", is usually Tahoma.
constexpr DigitWidth digitWidths[] = {
    {u"Calibri", 0.507}, {u"Carlito", 0.507}, {u"Times", 0.500}, {u"Courier", 0.600}};
constexpr double usualDigitWidth = 0.556;

} // namespace

int digitPixels(const FontData &font)
{
    const auto known =
        std::find_if(std::begin(digitWidths), std::end(digitWidths), [&](const DigitWidth &width) {
            return font.name.compare(0, width.fontNamePrefix.size(), width.fontNamePrefix) == 0;
        });
    const double ofHeight = known == std::end(digitWidths) ? usualDigitWidth : known->ofHeight;
    return std::max(1, static_cast<int>(std::lround(font.points * pixelsPerPoint * ofHeight)));
}

double storedColumnWidth(double chars, int digitPixels)
{
    if (chars <= 0)
        return 0;
    // If a column is narrower than one digit, programs scale the padding together with the digit.
    const double pixels = chars < 1 ? std::round(chars * (digitPixels + paddingPixels))
                                    : std::round(chars * digitPixels) + paddingPixels;
    return std::min(std::trunc(pixels / digitPixels * steps) / steps, maxStoredWidth);
}

double defaultRowPoints(const FontData &font)
{
    constexpr double lineHeight = 1.2;
    return std::min((std::round(font.points * pixelsPerPoint * lineHeight) + 1) / pixelsPerPoint,
                    maxRowPoints);
}

} // namespace workbook
