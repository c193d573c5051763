#pragma once

#include "reports/monthlyattendata.h"
#include "reports/monthlyattenrow.h"

#include "workbook/book.h"
#include "workbook/font.h"
#include "workbook/format.h"
#include "workbook/sheet.h"

#include <QCoreApplication>
#include <QVector>

/**
 * The sheet of the monthly report: values in, cells out, one row per person.
 *
 * Writes to a book that outlives it. Cells that the engine refuses stay empty.
 */
class MonthlyAttenSheet
{
    Q_DECLARE_TR_FUNCTIONS(MonthlyAttenReport) // the texts of one report have one context

public:
    MonthlyAttenSheet(libxl::IBookT<wchar_t> &book, const MonthlyAttenOptions &options,
                      const InterruptionCatalogue &catalogue);
    ~MonthlyAttenSheet();
    Q_DISABLE_COPY_MOVE(MonthlyAttenSheet)

    /// Adds the sheet and writes the heading row; false when the book refuses the sheet.
    bool begin();

    /// Rows come out in the order of the calls.
    void writeRow(const MonthlyAttenRow &values);

    void finish();

private:
    struct Column;
    static QVector<Column> fixedColumns(bool payrollNumber);
    static Column extraColumn(const QString &shortcut, const InterruptionCatalogue &catalogue);
    static Column vouchersColumn();

    void createFormats(int decimalNumber);
    void writeHeadings();
    void writeCell(int col, const Column &column, const MonthlyAttenRow &values);
    void writePositive(int col, double number);
    void writeFormula(int col, const QString &pattern);

    libxl::IBookT<wchar_t> &book;
    const bool payrollNumber; ///< shown in the first column instead of the personal number
    QVector<Column> columns;
    libxl::ISheetT<wchar_t> *sheet = nullptr;
    libxl::IFormatT<wchar_t> *headingFormat = nullptr;
    libxl::IFormatT<wchar_t> *idFormat = nullptr;
    libxl::IFormatT<wchar_t> *valueFormat = nullptr;
    libxl::IFormatT<wchar_t> *nameFormat = nullptr;
    int row = 0; ///< the row written last; 0 is the heading
};
