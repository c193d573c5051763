#pragma once

#include "reports/attenreport.h"
#include "reports/dailyattendata.h"
#include "reports/dailyattenoptions.h"

#include <QVariant>

struct ReportNeeds;

/// The daily attendance report: each day of the month so far, for each person.
class DailyAttenReport : public AttenReport
{
    Q_OBJECT

public:
    DailyAttenReport(const QSqlDatabase &db, QObject *parent);

    /// See ReportKind::needs.
    static ReportNeeds needs(const QMap<QString, QVariant> &values, const QDate &today);

    /// Replaces the shift table with the shifts of the month of `date`.
    void loadShiftsForMonth(const QDate &date);

    /// Returns the person's shift on the day, or -1 if the shift table has none.
    int shiftFor(int uid, int dayOfMonth) const;

    /// See durationValue().
    static QVariant strOrDecTimeFormat(double seconds, bool decimal);

    /// Month keys are year * 100 + month.
    QDate monthToDate(unsigned month) const;
    unsigned dateToMonth(const QDate &date) const;

protected:
    void loadOptions() override;
    QString fileNameByOptions(const QDate &today) const override;
    std::unique_ptr<ReportContent> createContent(const ReportRun &run) override;
    const char *bookFactoryName() const override { return "xlCreateBook()"; }
    MailTexts mailTexts(const QDate &today) const override;

private:
    class Content;

    DailyAttenOptions options;
    QString uids; ///< the setting "uids" of the last run; no query uses it
    ShiftTable shifts;
};
