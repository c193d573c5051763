#pragma once

namespace workbook
{

struct FontData;

constexpr double minRowPoints = 0.1;   // two twips, the minimum of .xls files
constexpr double maxRowPoints = 409.5; // the limit of spreadsheet programs

/**
 * Returns the width of a font's widest digit in pixels of 1/96 inch, estimated from the name and
 * the size of the font.
 */
int digitPixels(const FontData &font);

/**
 * Returns the width that files store for a column whose width is shown as `chars`. Both widths are
 * in digits of the default font. A digit is `digitPixels` wide. The stored width includes five
 * pixels of padding, or fewer if the column is narrower than one digit. The stored width is rounded
 * down to 1/256 of a digit. It is at most 255, the limit of spreadsheet programs.
 */
double storedColumnWidth(double chars, int digitPixels);

/** Returns the height in points of rows whose height is not set. `font` is the default font. */
double defaultRowPoints(const FontData &font);

} // namespace workbook
