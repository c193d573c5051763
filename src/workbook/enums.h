#pragma once

namespace libxl
{

/** Horizontal alignment. General aligns text left and numbers right. */
enum class AlignH {
    General = 0,
    Left = 1,
    Centre = 2,
    Right = 3,
    Fill = 4,
    Justify = 5,
    CentreAcross = 6,
    Distributed = 7
};

enum class AlignV { Top = 0, Centre = 1, Bottom = 2, Justify = 3, Distributed = 4 };

enum class BorderStyle {
    None = 0,
    Thin = 1,
    Medium = 2,
    Dashed = 3,
    Dotted = 4,
    Thick = 5,
    Double = 6,
    Hair = 7,
    MediumDashed = 8,
    DashDot = 9,
    MediumDashDot = 10,
    DashDotDot = 11,
    MediumDashDotDot = 12,
    SlantedDashDot = 13
};

/**
 * A colour: Automatic, or an entry of the default palette of spreadsheet programs. The palette has
 * 56 entries, numbered from 8 to 63. For an entry that has no enumerator, cast its number to Color.
 */
enum class Color {
    Black = 8,
    White = 9,
    Red = 10,
    Green = 11,
    Blue = 12,
    Yellow = 13,
    Magenta = 14,
    Cyan = 15,
    Automatic = 64
};

enum class CellType { Empty = 0, Number = 1, String = 2 };

} // namespace libxl
