#pragma once

#include "reports/dailyattendata.h"
#include "reports/dailyattenrow.h"

#include "workbook/book.h"
#include "workbook/font.h"
#include "workbook/format.h"
#include "workbook/sheet.h"

#include <QCoreApplication>
#include <QVector>

/**
 * The sheet of the daily report: values in, cells out, one row per day and person.
 *
 * Writes to a book that outlives it. Cells that the engine refuses stay empty.
 */
class DailyAttenSheet
{
    Q_DECLARE_TR_FUNCTIONS(DailyAttenReport) // the texts of one report have one context

public:
    DailyAttenSheet(libxl::IBookT<wchar_t> &book, const DailyAttenOptions &options);
    ~DailyAttenSheet();
    Q_DISABLE_COPY_MOVE(DailyAttenSheet)

    /// Adds the sheet and writes the heading row; false when the book refuses the sheet.
    bool begin(const QString &name);

    /// Rows come out in the order of the calls.
    void writeRow(const DailyAttenPerson &person, const DailyAttenRow &values);

    void finish();

private:
    struct Column;
    static QVector<Column> allColumns();

    void createFormats(int decimalNumber);
    void writeHeadings();
    void writeCell(int col, const Column &column, const DailyAttenPerson &person,
                   const DailyAttenRow &values);
    void writeDuration(int col, double seconds, bool negative);
    QString interruptionText(const QMap<QString, InterruptionTotal> &interruptions) const;

    libxl::IBookT<wchar_t> &book;
    DailyAttenOptions options;
    QVector<Column> columns; ///< those that the options ask for
    libxl::ISheetT<wchar_t> *sheet = nullptr;
    libxl::IFormatT<wchar_t> *headingFormat = nullptr;
    libxl::IFormatT<wchar_t> *textFormat = nullptr;
    libxl::IFormatT<wchar_t> *centredFormat = nullptr;
    libxl::IFormatT<wchar_t> *decimalFormat = nullptr;
    int row = 0; ///< the row written last; 0 is the heading
};
