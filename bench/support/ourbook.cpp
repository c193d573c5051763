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

    [[nodiscard]] Format *of(SampleLook look) const
    {
        Format *const formats[] = {nullptr, text, centred, bordered};
        return formats[int(look)];
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
    for (int column = 0; column < SampleRows::columns; ++column) {
        const SampleCell cell = rows.cell(index, column);
        Format *format = formats.of(cell.look);
        if (cell.text)
            sheet.writeStr(row, column, cell.text->wide.c_str(), format);
        else if (cell.isNumber)
            sheet.writeNum(row, column, cell.number, format);
        else
            sheet.writeBlank(row, column, format);
    }
}

} // namespace

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
