#include "support/ourbook.h"

#include "workbook/book.h"
#include "workbook/font.h"
#include "workbook/format.h"
#include "workbook/sheet.h"

namespace
{

using Book = libxl::IBookT<wchar_t>;
using Sheet = libxl::ISheetT<wchar_t>;
using Format = libxl::IFormatT<wchar_t>;

struct Formats {
    explicit Formats(Book &book)
        : heading(book.addFormat())
        , text(book.addFormat())
        , centred(book.addFormat(text))
        , bordered(book.addFormat())
    {
        heading->setBorder(libxl::BorderStyle::Medium);
        centred->setAlignH(libxl::AlignH::Centre);
        bordered->setBorder(libxl::BorderStyle::Thin);
    }

    Format *heading;
    Format *text;
    Format *centred;
    Format *bordered;
};

void setUpPage(Sheet &sheet)
{
    sheet.setPrintGridlines(true);
    sheet.setLandscape(true);
    sheet.setMarginLeft(0.1968);
    sheet.setMarginRight(0.1968);
    sheet.setMarginTop(0.1968);
    sheet.setPrintFit(1, 0);
    sheet.setFooter(L"Strana &P/&N", 0.5);
    sheet.setCol(1, SampleRows::columns - 1, 20);
    sheet.split(1, 0);
    sheet.setPrintRepeatRows(0, 0);
}

void writeRow(Sheet &sheet, const Formats &formats, const SampleRows &rows, int index)
{
    const int row = index + 1;
    sheet.writeNum(row, 0, rows.personalNumber(index));
    sheet.writeStr(row, 1, rows.person(index).wide.c_str(), formats.text);
    sheet.writeStr(row, 2, rows.group(index).wide.c_str(), formats.text);
    sheet.writeStr(row, 3, rows.shift(index).wide.c_str(), formats.centred);
    sheet.writeStr(row, 4, rows.department(index).wide.c_str(), formats.text);
    sheet.writeStr(row, 5, rows.centre(index).wide.c_str(), formats.text);
    sheet.writeNum(row, 6, rows.dayOfMonth(index));
    for (int i = 0; i < SampleRows::timeColumns; ++i) {
        const int column = SampleRows::firstTime + i;
        if (const SampleText *time = rows.time(index, i))
            sheet.writeStr(row, column, time->wide.c_str(), formats.bordered);
        else
            sheet.writeBlank(row, column, formats.bordered);
    }
    sheet.writeStr(row, SampleRows::columns - 1, rows.interruptions(index).wide.c_str());
}

} // namespace

bool canWriteXls()
{
    Book *book = xlCreateBookW();
    if (book)
        book->release();
    return book != nullptr;
}

bool writeOurBook(const QString &path, const SampleRows &rows)
{
    Book *book = path.endsWith(QLatin1String(".xls")) ? xlCreateBookW() : xlCreateXMLBookW();
    book->setLocale("UTF-8");
    book->setDefaultFont(L"MS Shell Dlg 2", 10);
    book->setRgbMode(true);
    Sheet *sheet = book->addSheet(rows.sheetName().wide.c_str());
    const Formats formats(*book);
    setUpPage(*sheet);
    for (int column = 0; column < SampleRows::columns; ++column)
        sheet->writeStr(0, column, rows.heading(column).wide.c_str(), formats.heading);
    for (int index = 0; index < rows.count(); ++index)
        writeRow(*sheet, formats, rows, index);
    const bool saved = book->save(path.toStdWString().c_str());
    book->release();
    return saved;
}
