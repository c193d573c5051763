#include "workbook/xlsx/xlsxstyles.h"

#include "workbook/model/model.h"
#include "workbook/writing/palette.h"
#include "workbook/writing/styletable.h"
#include "workbook/xlsx/xmltext.h"

#include <array>
#include <map>
#include <utility>

namespace workbook
{

namespace
{

using Border = std::pair<std::array<libxl::BorderStyle, 4>, std::array<libxl::Color, 4>>;

constexpr std::array<const char *, 4> sideNames = {"left", "right", "top", "bottom"};

constexpr std::array<const char *, 14> borderNames = {"none",
                                                      "thin",
                                                      "medium",
                                                      "dashed",
                                                      "dotted",
                                                      "thick",
                                                      "double",
                                                      "hair",
                                                      "mediumDashed",
                                                      "dashDot",
                                                      "mediumDashDot",
                                                      "dashDotDot",
                                                      "mediumDashDotDot",
                                                      "slantDashDot"};

constexpr std::array<const char *, 8> alignHNames = {
    "general", "left", "center", "right", "fill", "justify", "centerContinuous", "distributed"};

constexpr std::array<const char *, 5> alignVNames = {"top", "center", "bottom", "justify",
                                                     "distributed"};

template <class Names, class Enum>
const char *nameOf(const Names &names, Enum value)
{
    return names.at(static_cast<std::size_t>(value));
}

/** Returns "FFrrggbb"; FF means opaque. */
std::string argb(libxl::Color colour)
{
    constexpr char hex[] = "0123456789ABCDEF";
    std::string text = "FF";
    for (unsigned shift = 24; shift > 0; shift -= 4)
        text += hex[(paletteRgb(colour) >> (shift - 4)) & 0xFU];
    return text;
}

/** Builds xl/styles.xml. Its lists are in the order that the file format requires. */
class StylesPart
{
public:
    StylesPart(const BookData &bookData, const StyleTable &table)
        : book(bookData)
        , styles(table)
    {
    }

    std::string text()
    {
        xml << xmlDeclaration << "<styleSheet xmlns=\"" << sheetNamespace << "\">";
        numFormats();
        fonts();
        // Programs assume that the first two fills are "none" and "gray125".
        xml << "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
               "<fill><patternFill patternType=\"gray125\"/></fill></fills>";
        borders();
        xml << "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" "
               "borderId=\"0\"/></cellStyleXfs>";
        cellFormats();
        xml << "<cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/>"
               "</cellStyles></styleSheet>";
        return std::string(xml.view());
    }

private:
    void numFormats()
    {
        if (book.numFormats.empty())
            return;
        xml << "<numFmts count=\"" << book.numFormats.size() << "\">";
        int id = firstOwnNumFormat;
        for (const std::u16string &code : book.numFormats)
            xml << "<numFmt numFmtId=\"" << id++ << "\" formatCode=\"" << code << "\"/>";
        xml << "</numFmts>";
    }

    void fonts()
    {
        xml << "<fonts count=\"" << styles.fonts().size() << "\">";
        for (const FontData &font : styles.fonts())
            xml << "<font>" << (font.bold ? "<b/>" : "") << "<sz val=\"" << font.points
                << "\"/><name val=\"" << font.name << "\"/></font>";
        xml << "</fonts>";
    }

    void borders()
    {
        std::vector<Border> distinct;
        std::map<Border, std::size_t> places;
        for (const FormatData &format : styles.formats()) {
            const Border border(format.borders, format.borderColours);
            const auto [known, isNew] = places.try_emplace(border, distinct.size());
            if (isNew)
                distinct.push_back(border);
            borderIds.push_back(known->second);
        }
        xml << "<borders count=\"" << distinct.size() << "\">";
        for (const Border &border : distinct) {
            xml << "<border>";
            for (const Side side : {Left, Right, Top, Bottom})
                borderSide(side, border.first.at(side), border.second.at(side));
            xml << "<diagonal/></border>";
        }
        xml << "</borders>";
    }

    void borderSide(Side side, libxl::BorderStyle style, libxl::Color colour)
    {
        const char *name = sideNames.at(side);
        xml << "<" << name;
        if (style == libxl::BorderStyle::None) {
            xml << "/>";
            return;
        }
        xml << " style=\"" << nameOf(borderNames, style) << "\"><color ";
        if (colour == libxl::Color::Automatic)
            xml << "auto=\"1";
        else if (book.rgbColours)
            xml << "rgb=\"" << argb(colour);
        else
            xml << "indexed=\"" << static_cast<int>(colour);
        xml << "\"/></" << name << ">";
    }

    void cellFormats()
    {
        xml << "<cellXfs count=\"" << styles.formats().size() << "\">";
        for (std::size_t i = 0; i < styles.formats().size(); ++i)
            cellFormat(styles.formats()[i], borderIds[i]);
        xml << "</cellXfs>";
    }

    void cellFormat(const FormatData &format, std::size_t borderId)
    {
        xml << "<xf numFmtId=\"" << format.numFormat << "\" fontId=\"" << format.font
            << R"(" fillId="0" borderId=")" << borderId << R"(" xfId="0")";
        xml << (format.numFormat != 0 ? " applyNumberFormat=\"1\"" : "")
            << (format.font != 0 ? " applyFont=\"1\"" : "")
            << (borderId != 0 ? " applyBorder=\"1\"" : "");
        const bool isH = format.alignH != libxl::AlignH::General;
        const bool isV = format.alignV != libxl::AlignV::Bottom;
        if (!isH && !isV && !format.wrap) {
            xml << "/>";
            return;
        }
        xml << " applyAlignment=\"1\"><alignment";
        if (isH)
            xml << " horizontal=\"" << nameOf(alignHNames, format.alignH) << "\"";
        if (isV)
            xml << " vertical=\"" << nameOf(alignVNames, format.alignV) << "\"";
        xml << (format.wrap ? " wrapText=\"1\"" : "") << "/></xf>";
    }

    const BookData &book;
    const StyleTable &styles;
    std::vector<std::size_t> borderIds; // of each cell format
    XmlText xml;
};

} // namespace

std::string xlsxStyles(const BookData &book, const StyleTable &styles)
{
    return StylesPart(book, styles).text();
}

} // namespace workbook
