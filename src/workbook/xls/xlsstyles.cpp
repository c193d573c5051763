#include "workbook/xls/xlsstyles.h"

#include "workbook/model/model.h"
#include "workbook/writing/styletable.h"
#include "workbook/xls/records.h"
#include "workbook/xls/recordwriter.h"

namespace workbook
{

namespace
{

// FONT: u16 height in twips, u16 flags, u16 colour, u16 weight, u16 superscript or
//       subscript, u8 underline, u8 family, u8 character set, u8 0, name as short text
void font(const FontData &data, RecordWriter &out)
{
    constexpr unsigned boldFlag = 1;
    constexpr unsigned automaticColour = 0x7FFF;
    out.begin(record::Font)
        .u16(static_cast<unsigned>(data.points) * twipsPerPoint)
        .u16(data.bold ? boldFlag : 0)
        .u16(automaticColour)
        .u16(data.bold ? 700 : 400)
        .u16(0)
        .u32(0)
        .shortText(data.name)
        .end();
}

// The default font is written four times, as fonts 0 to 3. No font has the number 4, so the number
// of any other font is its index in the style table plus 4.
constexpr unsigned defaultFontCopies = 4;

unsigned fontIndex(std::size_t tableIndex)
{
    return tableIndex == 0 ? 0 : static_cast<unsigned>(tableIndex) + defaultFontCopies;
}

void fonts(const StyleTable &styles, RecordWriter &out)
{
    for (unsigned copy = 1; copy < defaultFontCopies; ++copy)
        font(styles.fonts().front(), out);
    for (const FontData &data : styles.fonts())
        font(data, out);
}

struct NumFormat {
    unsigned index;
    std::u16string_view code;
};

// Built-in formats that every file must define, although their indexes have a fixed meaning.
constexpr NumFormat spelledOut[] = {
    {5, u"\"$\"#,##0_);\\(\"$\"#,##0\\)"},
    {6, u"\"$\"#,##0_);[Red]\\(\"$\"#,##0\\)"},
    {7, u"\"$\"#,##0.00_);\\(\"$\"#,##0.00\\)"},
    {8, u"\"$\"#,##0.00_);[Red]\\(\"$\"#,##0.00\\)"},
    {42, u"_(\"$\"* #,##0_);_(\"$\"* \\(#,##0\\);_(\"$\"* \"-\"_);_(@_)"},
    {41, u"_(* #,##0_);_(* \\(#,##0\\);_(* \"-\"_);_(@_)"},
    {44, u"_(\"$\"* #,##0.00_);_(\"$\"* \\(#,##0.00\\);_(\"$\"* \"-\"??_);_(@_)"},
    {43, u"_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"??_);_(@_)"}};

void numFormats(const BookData &book, RecordWriter &out)
{
    for (const NumFormat &format : spelledOut)
        out.begin(record::Format).u16(format.index).longText(format.code).end();
    unsigned index = firstOwnNumFormat;
    for (const std::u16string &code : book.numFormats)
        out.begin(record::Format).u16(index++).longText(code).end();
}

// XF: u16 font, u16 number format, u16 kind, u8 alignment, u8 rotation, u8 indent, u8 used parts,
//     2 x u32 borders, u16 fill colours
void cellFormat(const FormatData &format, unsigned kind, unsigned usedParts, RecordWriter &out)
{
    constexpr unsigned noFill = 0x20C0;
    constexpr unsigned wrapBit = 1U << 3U;
    const auto style = [&](Side side) {
        return static_cast<std::uint32_t>(format.borders.at(side));
    };
    const auto colour = [&](Side side) {
        return style(side) == 0 ? 0U : static_cast<std::uint32_t>(format.borderColours.at(side));
    };
    const unsigned align = static_cast<unsigned>(format.alignH) | (format.wrap ? wrapBit : 0) |
                           static_cast<unsigned>(format.alignV) << 4U;
    out.begin(record::Xf)
        .u16(fontIndex(format.font))
        .u16(static_cast<unsigned>(format.numFormat))
        .u16(kind)
        .u8(align)
        .u16(0)
        .u8(usedParts)
        .u32(style(Left) | style(Right) << 4U | style(Top) << 8U | style(Bottom) << 12U |
             colour(Left) << 16U | colour(Right) << 23U)
        .u32(colour(Top) | colour(Bottom) << 7U)
        .u16(noFill)
        .end();
}

void cellFormats(const StyleTable &styles, RecordWriter &out)
{
    constexpr unsigned styleKind = 0xFFF5; // locked; a style, which has no parent
    constexpr unsigned cellKind = 0x0001;  // locked; a cell format with style 0 as its parent
    constexpr unsigned allParts = 0xFC;
    constexpr unsigned outlineParts = 0xF4;
    // The named style "Normal", then fourteen copies of it for outline levels.
    for (unsigned i = 0; i < xlsFormatIndex(0); ++i)
        cellFormat(styles.formats().front(), styleKind, i == 0 ? 0 : outlineParts, out);
    for (const FormatData &format : styles.formats())
        cellFormat(format, cellKind, allParts, out);
}

} // namespace

void writeXlsStyles(const BookData &book, const StyleTable &styles, RecordWriter &out)
{
    constexpr unsigned builtIn = 0x8000;
    constexpr unsigned normal = 0;
    constexpr unsigned noLevel = 0xFF;
    fonts(styles, out);
    numFormats(book, out);
    cellFormats(styles, out);
    out.begin(record::Style).u16(builtIn).u8(normal).u8(noLevel).end();
}

} // namespace workbook
