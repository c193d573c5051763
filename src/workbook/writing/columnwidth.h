#pragma once

namespace workbook
{

struct FontData;

constexpr double minRowPoints = 0.1;
constexpr double maxRowPoints = 409.5; // the most that the formats can store

/** Returns how wide a font's widest digit, the unit of column widths, is in pixels of 1/96 inch. */
int digitPixels(const FontData &font);

/**
 * Returns the width that files store for a column whose width is shown as `chars` digits. It
 * includes five pixels of padding and is in digits, rounded down to 1/256; at most 255, the limit
 * of spreadsheet programs.
 */
double storedColumnWidth(double chars, int digitPixels);

/** Returns the height in points of a row in `font` that does not set its height. */
double defaultRowPoints(const FontData &font);

} // namespace workbook
