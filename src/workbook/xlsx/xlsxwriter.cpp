#include "workbook/model/fileformat.h"
#include "workbook/model/model.h"
#include "workbook/writing/bytesink.h"
#include "workbook/writing/sharedstrings.h"
#include "workbook/writing/styletable.h"
#include "workbook/xlsx/xlsxsheet.h"
#include "workbook/xlsx/xlsxstyles.h"
#include "workbook/xlsx/xmltext.h"
#include "workbook/xlsx/zipwriter.h"

#include <algorithm>

namespace workbook
{

namespace
{

constexpr std::size_t maxCellFormats = 64000;

constexpr std::string_view officeTypes =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.";
constexpr std::string_view officeRelations =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr std::string_view packageNamespace = "http://schemas.openxmlformats.org/package/2006/";

void contentType(XmlText &xml, std::string_view part, std::string_view type)
{
    xml << "<Override PartName=\"/xl/" << part << ".xml\" ContentType=\"" << officeTypes << type
        << "+xml\"/>";
}

void contentTypes(const BookData &book, XmlText &xml)
{
    xml << xmlDeclaration << "<Types xmlns=\"" << packageNamespace
        << "content-types\"><Default Extension=\"rels\" "
           "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
           "<Default Extension=\"xml\" ContentType=\"application/xml\"/>";
    contentType(xml, "workbook", "sheet.main");
    contentType(xml, "styles", "styles");
    contentType(xml, "sharedStrings", "sharedStrings");
    for (std::size_t i = 1; i <= book.sheets.size(); ++i)
        contentType(xml, "worksheets/sheet" + std::to_string(i), "worksheet");
    xml << "</Types>";
}

void beginRelations(XmlText &xml)
{
    xml << xmlDeclaration << "<Relationships xmlns=\"" << packageNamespace << "relationships\">";
}

void relation(XmlText &xml, std::size_t id, std::string_view type, std::string_view target)
{
    xml << "<Relationship Id=\"rId" << id << "\" Type=\"" << officeRelations << "/" << type
        << "\" Target=\"" << target << ".xml\"/>";
}

void packageRelations(XmlText &xml)
{
    beginRelations(xml);
    relation(xml, 1, "officeDocument", "xl/workbook");
    xml << "</Relationships>";
}

/** Lists the parts of the book: the sheets as rId1, rId2 and so on, then the other parts. */
void bookRelations(const BookData &book, XmlText &xml)
{
    beginRelations(xml);
    std::size_t id = 1;
    for (; id <= book.sheets.size(); ++id)
        relation(xml, id, "worksheet", "worksheets/sheet" + std::to_string(id));
    relation(xml, id, "styles", "styles");
    relation(xml, id + 1, "sharedStrings", "sharedStrings");
    xml << "</Relationships>";
}

std::u16string quotedName(const SheetData &sheet)
{
    std::u16string quoted = u"'";
    for (const char16_t unit : sheet.name)
        quoted.append(unit == u'\'' ? 2 : 1, unit);
    return quoted + u"'";
}

void definedNames(const BookData &book, XmlText &xml)
{
    bool open = false;
    for (std::size_t i = 0; i < book.sheets.size(); ++i) {
        const SheetData &sheet = book.sheets[i];
        if (!sheet.repeatRows)
            continue;
        xml << (open ? "" : "<definedNames>")
            << R"(<definedName name="_xlnm.Print_Titles" localSheetId=")" << i << "\">"
            << quotedName(sheet) << "!$" << sheet.repeatRows->first + 1 << ":$"
            << sheet.repeatRows->second + 1 << "</definedName>";
        open = true;
    }
    xml << (open ? "</definedNames>" : "");
}

void workbookPart(const BookData &book, XmlText &xml)
{
    xml << xmlDeclaration << "<workbook xmlns=\"" << sheetNamespace << "\" xmlns:r=\""
        << officeRelations << "\"><bookViews><workbookView/></bookViews><sheets>";
    std::size_t id = 1;
    for (const SheetData &sheet : book.sheets) {
        xml << "<sheet name=\"" << sheet.name << "\" sheetId=\"" << id << "\" r:id=\"rId" << id
            << "\"/>";
        ++id;
    }
    xml << "</sheets>";
    definedNames(book, xml);
    xml << "<calcPr fullCalcOnLoad=\"1\"/></workbook>";
}

/**
 * Returns whether the text needs the attribute xml:space="preserve". Without the attribute,
 * programs may drop line breaks and tabs, and blanks at the beginning and the end of the text.
 */
bool needsSpacePreserved(std::u16string_view text)
{
    return !text.empty() &&
           (text.front() == u' ' || text.back() == u' ' ||
            std::any_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x20; }));
}

void writeStrings(const BookData &book, const SharedStrings &strings, ZipWriter &zip)
{
    zip.begin("xl/sharedStrings.xml");
    XmlText xml;
    xml << xmlDeclaration << "<sst xmlns=\"" << sheetNamespace << "\" count=\""
        << strings.references() << "\" uniqueCount=\"" << strings.used().size() << "\">";
    for (const std::uint32_t index : strings.used()) {
        const std::u16string_view text = book.strings.at(index);
        xml << (needsSpacePreserved(text) ? "<si><t xml:space=\"preserve\">" : "<si><t>") << text
            << "</t></si>";
        flushChunk(xml, zip);
    }
    xml << "</sst>";
    zip.append(xml.view());
    zip.end();
}

template <class Part>
void addPart(ZipWriter &zip, const char *name, Part part)
{
    XmlText xml;
    part(xml);
    zip.add(name, xml.view());
}

void writeXlsx(const BookData &book, ByteSink &sink)
{
    const StyleTable styles(book);
    if (styles.formats().size() > maxCellFormats) {
        sink.fail();
        return;
    }
    const SharedStrings strings(book, SharedStrings::Empty::Kept);
    ZipWriter zip(sink);
    addPart(zip, "[Content_Types].xml", [&](XmlText &xml) { contentTypes(book, xml); });
    addPart(zip, "_rels/.rels", packageRelations);
    addPart(zip, "xl/workbook.xml", [&](XmlText &xml) { workbookPart(book, xml); });
    addPart(zip, "xl/_rels/workbook.xml.rels", [&](XmlText &xml) { bookRelations(book, xml); });
    zip.add("xl/styles.xml", xlsxStyles(book, styles));
    for (std::size_t i = 0; i < book.sheets.size(); ++i) {
        zip.begin("xl/worksheets/sheet" + std::to_string(i + 1) + ".xml");
        XlsxSheet(book, book.sheets[i], styles, strings, zip).write(i == 0);
        zip.end();
    }
    writeStrings(book, strings, zip);
    zip.finish();
}

/**
 * Accepts every formula: the file contains its text, and spreadsheet programs may support functions
 * that this engine does not support.
 */
bool isAnyFormula(std::u16string_view /*text*/)
{
    return true;
}

} // namespace

const FileFormat xlsxFormat = {1048576, 16384, isAnyFormula, writeXlsx};

} // namespace workbook
