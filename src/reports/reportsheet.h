#pragma once

#include "workbook/book.h"
#include "workbook/format.h"
#include "workbook/sheet.h"

#include <QString>
#include <QVector>

#include <functional>

/// The value of ReportColumn::widthChars for the spreadsheet program's default width.
constexpr double defaultWidth = 0;

/// One cell of a report's sheet. The cell stays empty if the engine rejects its value.
struct ReportCell {
    libxl::ISheetT<wchar_t> &sheet;
    int row;
    int col;

    void writeText(const QString &text, libxl::IFormatT<wchar_t> *format = nullptr) const;
    void writeNumber(double number, libxl::IFormatT<wchar_t> *format = nullptr) const;
    void writeFormula(const QString &formula, libxl::IFormatT<wchar_t> *format) const;
    void writeBlank(libxl::IFormatT<wchar_t> *format) const;
};

/// A column of a report's sheet. `write` writes the column's cell of one row.
template <typename Values>
struct ReportColumn {
    QString heading;
    double widthChars;
    std::function<void(const ReportCell &, const Values &)> write;
    const char *name = ""; ///< the name by which formulas refer to the column
};

/// Writes the headings into row 0 and sets the columns' widths.
template <typename Values>
void writeHeadings(libxl::ISheetT<wchar_t> &sheet, const QVector<ReportColumn<Values>> &columns,
                   libxl::IFormatT<wchar_t> *format)
{
    for (int col = 0; col < columns.size(); ++col) {
        const ReportColumn<Values> &column = columns.at(col);
        if (column.widthChars > defaultWidth)
            sheet.setCol(col, col, column.widthChars);
        ReportCell{sheet, 0, col}.writeText(column.heading, format);
    }
}

template <typename Values>
void writeRow(libxl::ISheetT<wchar_t> &sheet, int row, const QVector<ReportColumn<Values>> &columns,
              const Values &values)
{
    for (int col = 0; col < columns.size(); ++col)
        columns.at(col).write(ReportCell{sheet, row, col}, values);
}

/// Returns how spreadsheets name a column: "A" for 0, "AA" for 26.
QString columnLetters(int col);

/**
 * Replaces the column names in `pattern`, which are in braces, with column letters and "%1":
 * "={worked}-{planned}" becomes "=K%1-C%1". The caller replaces "%1" with the row's number, counted
 * from 1.
 */
template <typename Values>
QString resolveFormula(QString pattern, const QVector<ReportColumn<Values>> &columns)
{
    for (int col = 0; col < columns.size(); ++col) {
        const QString name = QStringLiteral("{%1}").arg(QLatin1String(columns.at(col).name));
        pattern.replace(name, columnLetters(col) + QStringLiteral("%1"));
    }
    return pattern;
}

/// Sets up the printed pages of a report's sheet: landscape, one page wide, numbered.
void setUpReportPage(libxl::ISheetT<wchar_t> &sheet);

/// Keeps the heading row in view on screen and repeats it on every printed page.
void keepHeadingRow(libxl::ISheetT<wchar_t> &sheet);
