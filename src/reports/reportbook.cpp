#include "reports/reportbook.h"

#include "workbook/libxlhelper.h"

#include <QDir>
#include <QVarLengthArray>

namespace
{

constexpr int fontPoints = 10;
constexpr double marginInches = 0.1968;
constexpr double footerMarginInches = 0.5;

} // namespace

void setUpReportBook(libxl::IBookT<wchar_t> &book, const char *report)
{
    book.setKey(LibXlHelper::licenceName(), LibXlHelper::licenceKey());
    if (!book.setLocale("UTF-8"))
        qWarning("%s::makeReport() - setLocale of book Fail!", report);
    book.setDefaultFont(L"MS Shell Dlg 2", fontPoints);
    book.setRgbMode(true);
}

void setUpReportPage(libxl::ISheetT<wchar_t> &sheet)
{
    sheet.setPrintGridlines(true);
    sheet.setLandscape(true);
    sheet.setMarginLeft(marginInches);
    sheet.setMarginRight(marginInches);
    sheet.setMarginTop(marginInches);
    sheet.setPrintFit(1, 0);
    sheet.setFooter(L"Strana &P/&N", footerMarginInches);
}

void keepHeadingRow(libxl::ISheetT<wchar_t> &sheet)
{
    sheet.split(1, 0);
    sheet.setPrintRepeatRows(0, 0);
}

void writeText(libxl::ISheetT<wchar_t> &sheet, int row, int col, const QString &text,
               libxl::IFormatT<wchar_t> *format)
{
    // On the stack: a report writes hundreds of thousands of texts, few of them long.
    QVarLengthArray<wchar_t, 256> wide(text.size() + 1);
    wide[text.toWCharArray(wide.data())] = L'\0';
    sheet.writeStr(row, col, wide.constData(), format);
}

QString reportPath(const QString &fileName)
{
    // Qt's answer for a directory that does not exist is empty: that would be the root directory.
    const QString existing = QDir::tempPath();
    const QString folder = existing.isEmpty() ? qEnvironmentVariable("TMPDIR") : existing;
    return folder + QLatin1Char('/') + fileName;
}

bool saveReportBook(ReportBook book, const QString &path, const char *report)
{
    const bool saved = book->save(path.toStdWString().c_str());
    book.reset();
    if (!saved)
        qCritical("%s - XLS not saved!", report);
    return saved;
}

bool isBinaryBook(const QString &path)
{
    return path.endsWith(QLatin1String(".xls"), Qt::CaseInsensitive);
}
