#pragma once

namespace workbook
{

struct FontData;

constexpr double minRowPoints = 0.1;
constexpr double maxRowPoints = 409.5; // what the formats hold

/** Pixels (96 to the inch) of the widest digit of a font: the unit of column widths. */
int digitPixels(const FontData &font);

/**
 * The width that files hold for a column of `chars` digits as its user sees it: with five pixels of
 * padding, in digits, cut to 1/256. Not above 255, the most that spreadsheet programs take.
 */
double storedColumnWidth(double chars, int digitPixels);

/** Height in points of a row of text in `font` that sets none. */
double defaultRowPoints(const FontData &font);

} // namespace workbook
