#pragma once

#include "reports/monthlyattendata.h"
#include "reports/monthlyattenoptions.h"
#include "reports/monthlyattenrow.h"
#include "reports/reportsheet.h"

#include "workbook/font.h"

#include <QCoreApplication>

/**
 * Writes the sheet of the monthly report, one row per person.
 *
 * The book must exist until finish() has returned. A cell stays empty if the engine rejects its
 * value.
 */
class MonthlyAttenSheet
{
    Q_DECLARE_TR_FUNCTIONS(MonthlyAttenReport) // all texts of a report share one context

public:
    MonthlyAttenSheet(libxl::IBookT<wchar_t> &book, const MonthlyAttenOptions &options,
                      const InterruptionCatalogue &catalogue);
    Q_DISABLE_COPY_MOVE(MonthlyAttenSheet)

    /// Adds the sheet and writes the heading row. Returns false if the book rejects the sheet.
    bool begin();

    /// Appends a row.
    void writeRow(const MonthlyAttenRow &person);

    void finish();

private:
    using Column = ReportColumn<MonthlyAttenRow>;
    using Row = MonthlyAttenRow;

    void addColumns(const MonthlyAttenOptions &options, const InterruptionCatalogue &catalogue);
    Column numberColumn(bool payrollNumber) const;
    Column hoursColumn(const QString &heading, double widthChars, double Row::*hours,
                       const char *name) const;
    Column valueColumn(const QString &heading, double widthChars,
                       double AttMonthValues::*value) const;
    Column interruptionColumn(const QString &heading, double widthChars, unsigned int iid) const;
    Column extraColumn(const QString &shortcut, const InterruptionCatalogue &catalogue) const;
    Column formulaColumn(const QString &heading, double widthChars, const char *pattern,
                         bool needsPlanned);
    void createFormats(int decimalNumber);
    void writePositive(const ReportCell &cell, double number) const;

    libxl::IBookT<wchar_t> &book;
    QVector<Column> columns;
    QStringList formulas; ///< one such as "=K%1-C%1" per formula column
    libxl::ISheetT<wchar_t> *sheet = nullptr;
    libxl::IFormatT<wchar_t> *headingFormat = nullptr;
    libxl::IFormatT<wchar_t> *idFormat = nullptr;
    libxl::IFormatT<wchar_t> *valueFormat = nullptr;
    libxl::IFormatT<wchar_t> *nameFormat = nullptr;
    int row = 0; ///< the row written last; 0 is the heading
};
