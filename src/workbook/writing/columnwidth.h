#pragma once

namespace workbook
{

struct FontData;

constexpr double minRowPoints = 0.1;
constexpr double maxRowPoints = 409.5; // the most that the formats can store

/** Returns the width of a font's widest digit in pixels of 1/96 inch. */
int digitPixels(const FontData &font);

/**
 * Returns the width that files store for a column whose width is shown as `chars`. Both are in
 * digits of the default font, which are `digitPixels` wide. The stored width includes five pixels
 * of padding, or fewer for less than one digit. It is rounded down to 1/256, and is at most 255,
 * the limit of spreadsheet programs.
 */
double storedColumnWidth(double chars, int digitPixels);

/** Returns the height in points of rows whose height is not set. `font` is the default font. */
double defaultRowPoints(const FontData &font);

} // namespace workbook
