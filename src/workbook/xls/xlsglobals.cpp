#include "workbook/xls/xlsglobals.h"

#include "workbook/model/model.h"
#include "workbook/xls/records.h"
#include "workbook/xls/recordwriter.h"
#include "workbook/xls/xlslimits.h"
#include "workbook/xls/xlsstrings.h"
#include "workbook/xls/xlsstyles.h"

namespace workbook
{

namespace
{

constexpr unsigned utf16CodePage = 1200;

void user(RecordWriter &out)
{
    constexpr std::size_t paddedBytes = 112;
    out.begin(record::InterfaceHdr).u16(utf16CodePage).end();
    out.begin(record::Mms).u16(0).end();
    out.begin(record::InterfaceEnd).end();
    out.begin(record::WriteAccess).longText(u"AutoReport");
    out.bytes(std::string(paddedBytes - out.dataBytes(), ' ')).end();
    out.single(record::CodePage, utf16CodePage);
}

void protection(const BookData &book, RecordWriter &out)
{
    constexpr unsigned functionGroups = 14;
    out.single(record::Dsf, 0);
    out.begin(record::TabId);
    for (std::size_t i = 1; i <= book.sheets.size(); ++i)
        out.u16(static_cast<unsigned>(i));
    out.end();
    out.single(record::FnGroupCount, functionGroups);
    for (const unsigned id : {record::WindowProtect, record::Protect, record::Password,
                              record::Prot4Rev, record::Prot4RevPass})
        out.single(id, 0);
}

// WINDOW1: u16 x, u16 y, u16 width, u16 height (all in twips), u16 flags, u16 index of the shown
//          sheet, u16 index of the first tab, u16 number of selected sheets, u16 relative width of
//          the tabs
void window(RecordWriter &out)
{
    constexpr unsigned scrollBarsAndTabs = 0x38;
    out.begin(record::Window1).u16(0).u16(0).u16(0x4000).u16(0x2000);
    out.u16(scrollBarsAndTabs).u16(0).u16(0).u16(1).u16(0x0258).end();
    for (const unsigned id : {record::Backup, record::HideObj, record::DateMode})
        out.single(id, 0);
    out.single(record::Precision, 1);
    out.single(record::RefreshAll, 0);
    out.single(record::BookBool, 0);
}

// BOUNDSHEET: u32 position of the sheet, u8 visibility, u8 kind, name as short text
std::vector<std::uint32_t> sheetList(const BookData &book, RecordWriter &out)
{
    std::vector<std::uint32_t> places;
    for (const SheetData &sheet : book.sheets) {
        places.push_back(out.position() + recordHead);
        out.begin(record::BoundSheet).u32(0).u16(0).shortText(sheet.name).end();
    }
    return places;
}

// NAME: u16 flags, u8 shortcut key, u8 length of the name, u16 size of the tokens, u16 0,
//       u16 number of the sheet (from 1), u32 0, u8 flags of the name, name, tokens
// The name of print titles is the character 07. Their only token refers to an area of a sheet:
// u8 kind, u16 index in EXTERNSHEET, u16 first row, u16 last row, u16 first column, u16 last column
void printTitles(const SheetData &sheet, unsigned sheetNumber, unsigned externIndex,
                 RecordWriter &out)
{
    constexpr unsigned builtIn = 0x0020;
    constexpr unsigned tokenBytes = 11;
    constexpr unsigned areaOfSheet = 0x3B;
    out.begin(record::Name).u16(builtIn).u8(0).u8(1).u16(tokenBytes).u16(0);
    out.u16(sheetNumber).u32(0).u8(0).u8(0x07);
    out.u8(areaOfSheet)
        .u16(externIndex)
        .u16(static_cast<unsigned>(sheet.repeatRows->first))
        .u16(static_cast<unsigned>(sheet.repeatRows->second))
        .u16(0)
        .u16(xlsColumns - 1)
        .end();
}

// SUPBOOK (for this book): u16 number of sheets, u16 0401
// EXTERNSHEET: u16 count, then count times: u16 book, u16 first sheet, u16 last sheet
void names(const BookData &book, RecordWriter &out)
{
    std::vector<unsigned> titled;
    for (std::size_t i = 0; i < book.sheets.size(); ++i) {
        if (book.sheets[i].repeatRows)
            titled.push_back(static_cast<unsigned>(i));
    }
    if (titled.empty())
        return;
    constexpr unsigned thisBook = 0x0401;
    out.begin(record::SupBook).u16(static_cast<unsigned>(book.sheets.size())).u16(thisBook).end();
    out.begin(record::ExternSheet).u16(static_cast<unsigned>(titled.size()));
    for (const unsigned sheet : titled)
        out.u16(0).u16(sheet).u16(sheet);
    out.end();
    unsigned externIndex = 0;
    for (const unsigned sheet : titled)
        printTitles(book.sheets[sheet], sheet + 1, externIndex++, out);
}

} // namespace

void writeXlsBegin(XlsPart part, RecordWriter &out)
{
    constexpr unsigned version = 0x0600;
    constexpr unsigned build = 0x0DBB;
    constexpr unsigned year = 0x07CC;
    constexpr std::uint32_t history = 0x41;
    constexpr std::uint32_t lowestReader = 6;
    out.begin(record::Bof).u16(version).u16(static_cast<unsigned>(part)).u16(build).u16(year);
    out.u32(history).u32(lowestReader).end();
}

std::vector<std::uint32_t> writeXlsGlobals(const BookData &book, const StyleTable &styles,
                                           const SharedStrings &strings, RecordWriter &out)
{
    constexpr unsigned slovakia = 421;
    writeXlsBegin(XlsPart::Globals, out);
    user(out);
    protection(book, out);
    window(out);
    writeXlsStyles(book, styles, out);
    out.single(record::UseSelfs, 0);
    std::vector<std::uint32_t> sheetPlaces = sheetList(book, out);
    out.begin(record::Country).u16(slovakia).u16(slovakia).end();
    names(book, out);
    writeXlsStrings(book, strings, out);
    out.begin(record::Eof).end();
    return sheetPlaces;
}

} // namespace workbook
