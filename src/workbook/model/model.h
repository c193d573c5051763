#pragma once

#include "workbook/enums.h"
#include "workbook/model/cellstore.h"
#include "workbook/model/fileformat.h"
#include "workbook/model/stringtable.h"

#include <array>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/**
 * The content of a book as plain values. The classes in engine/ check and store the values. The
 * writers in xls/ and xlsx/ read them and do not depend on engine/.
 */
namespace workbook
{

struct FontData {
    std::u16string name = u"Arial";
    int points = 10;
    bool bold = false;
};

enum Side { Left, Right, Top, Bottom };

constexpr int firstOwnNumFormat = 164; // lower numbers are the built-in formats

struct FormatData {
    std::uint32_t font = 0;
    int numFormat = 0;
    libxl::AlignH alignH = libxl::AlignH::General;
    libxl::AlignV alignV = libxl::AlignV::Bottom;
    bool wrap = false;
    std::array<libxl::BorderStyle, 4> borders{};
    std::array<libxl::Color, 4> borderColours{{libxl::Color::Automatic, libxl::Color::Automatic,
                                               libxl::Color::Automatic, libxl::Color::Automatic}};
};

struct ColumnData {
    double widthChars = 0;
    std::uint32_t format = 0;
    bool hidden = false;
};

struct RowData {
    double heightPoints = 0;
    std::uint32_t format = 0;
    bool hidden = false;
};

/** Margins in inches. */
struct Margins {
    double left = 0.7;
    double right = 0.7;
    double top = 0.75;
    double bottom = 0.75;
    double header = 0.3;
    double footer = 0.3;
};

/** Width and height in pages; 0 means as many as needed. */
struct PrintFit {
    int width;
    int height;
};

struct SheetData {
    std::u16string name;
    CellStore cells;
    std::map<int, ColumnData> columns; // only columns that were set
    std::map<int, RowData> rows;       // only rows that were set
    int frozenRows = 0;
    int frozenColumns = 0;
    bool showGridlines = true;
    bool printGridlines = false;
    bool landscape = false;
    std::optional<PrintFit> fit;
    std::u16string footer;
    Margins margins;
    std::optional<std::pair<int, int>> repeatRows; // first and last
};

struct BookData {
    explicit BookData(const FileFormat &fileFormat)
        : format(fileFormat)
    {
    }

    const FileFormat &format;
    std::deque<FontData> fonts{FontData{}};       // the first is the default font
    std::deque<FormatData> formats{FormatData{}}; // the first is the default format
    std::vector<std::u16string> numFormats;       // codes, numbered from firstOwnNumFormat
    std::deque<SheetData> sheets;
    StringTable strings;
    StringTable formulas; // without the leading "="
    bool rgbColours = false;
    bool ranOut = false; // out of memory: a cell or a setting was lost, so save() must fail
};

} // namespace workbook
