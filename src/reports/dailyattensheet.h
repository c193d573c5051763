#pragma once

#include "reports/dailyattenoptions.h"
#include "reports/dailyattenrow.h"
#include "reports/reportsheet.h"

#include "workbook/font.h"

#include <QCoreApplication>

/**
 * Writes the sheet of the daily report, one row per day and person.
 *
 * The book must exist until finish() has returned. A cell stays empty if the engine rejects its
 * value.
 */
class DailyAttenSheet
{
    Q_DECLARE_TR_FUNCTIONS(DailyAttenReport) // all texts of a report share one context

public:
    DailyAttenSheet(libxl::IBookT<wchar_t> &book, const DailyAttenOptions &options);
    Q_DISABLE_COPY_MOVE(DailyAttenSheet)

    /// Adds the sheet and writes the heading row. Returns false if the book rejects the sheet.
    bool begin(const QString &name);

    /// Appends a row.
    void writeRow(const DailyAttenPerson &person, const DailyAttenRow &day);

    void finish();

private:
    /// What one row of the sheet shows.
    struct Line {
        const DailyAttenPerson &person;
        const DailyAttenRow &day;
    };
    using Column = ReportColumn<Line>;

    QVector<Column> allColumns() const;
    Column textColumn(const QString &heading, double widthChars,
                      QString DailyAttenPerson::*text) const;
    Column durationColumn(const QString &heading, double DailyAttenRow::*seconds,
                          bool negative = false) const;
    void createFormats(int decimalNumber);
    void writeDuration(const ReportCell &cell, double seconds, bool negative) const;
    QString interruptionText(const QMap<QString, InterruptionTotal> &interruptions) const;

    libxl::IBookT<wchar_t> &book;
    DailyAttenOptions options;
    QVector<Column> columns;
    libxl::ISheetT<wchar_t> *sheet = nullptr;
    libxl::IFormatT<wchar_t> *headingFormat = nullptr;
    libxl::IFormatT<wchar_t> *textFormat = nullptr;
    libxl::IFormatT<wchar_t> *centredFormat = nullptr;
    libxl::IFormatT<wchar_t> *decimalFormat = nullptr;
    int row = 0; ///< the row written last; 0 is the heading
};
