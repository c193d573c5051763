#include "reports/reportsheet.h"

#include <QVarLengthArray>

namespace
{

constexpr double marginInches = 0.1968;
constexpr double footerMarginInches = 0.5;
constexpr int letters = 26;

} // namespace

void ReportCell::writeText(const QString &text, libxl::IFormatT<wchar_t> *format) const
{
    // On the stack, because a report writes hundreds of thousands of texts, most of them short.
    QVarLengthArray<wchar_t, 256> wide(text.size() + 1);
    wide[text.toWCharArray(wide.data())] = L'\0';
    sheet.writeStr(row, col, wide.constData(), format);
}

void ReportCell::writeNumber(double number, libxl::IFormatT<wchar_t> *format) const
{
    sheet.writeNum(row, col, number, format);
}

void ReportCell::writeFormula(const QString &formula, libxl::IFormatT<wchar_t> *format) const
{
    sheet.writeFormula(row, col, formula.toStdWString().c_str(), format);
}

void ReportCell::writeBlank(libxl::IFormatT<wchar_t> *format) const
{
    sheet.writeBlank(row, col, format);
}

QString columnLetters(int col)
{
    QString name;
    for (int rest = col + 1; rest > 0; rest = (rest - 1) / letters)
        name.prepend(QChar('A' + (rest - 1) % letters));
    return name;
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
