#pragma once

#include "db/mailrecord.h"
#include "db/zasdbsettings.h"
#include "reports/dailyattendata.h"
#include "worker/reportbase.h"

#include <QDateTime>
#include <QHash>
#include <QPair>
#include <QStringList>
#include <QVariant>

class DailyAttenSheet;
struct ReportRun;

/**
 * The daily attendance report: each day of the month so far, for each person, as a workbook that
 * is queued as mail to every recipient.
 *
 * Belongs to a worker and runs in its thread. Outcomes go to the log; what lasts is the workbook
 * in the temporary directory, the queued mails and the setting "lastGenerated".
 */
class DailyAttenReport : public ReportBase
{
    Q_OBJECT

public:
    DailyAttenReport(const QSqlDatabase &db, QObject *parent);

    void doWork() override;

    /**
     * Makes, saves and queues the report for the month of `now`, up to and including its day,
     * due or not. "lastGenerated" becomes the current time once a mail has been queued. An
     * interruption of the thread ends it at the next row, without workbook and mail.
     */
    void makeReport(const QStringList &emails, const QDateTime &now = QDateTime::currentDateTime());

    /// The two halves of makeReport(), for a workbook in another place. The first takes the format
    /// from the extension of `path`, writes nothing else and is false when there is no workbook;
    /// the second answers how many mails are in the queue.
    bool saveWorkbook(const QString &path, const ReportRun &run);
    int queueMails(const QString &path, const ReportRun &run);
    /// The name that the workbook has in its mail.
    QString fileName(const QDate &today);

    /// One mail, its recipient open, with the file attached; without `data` if it is unreadable.
    MailRecord makeMail(const QString &path, const QDate &today = QDate::currentDate());

    /// What the customer's settings say now of what the report reads and shows.
    DailyAttenOptions readOptions();

    /// Replaces the shift table by the shifts of the month of `date`.
    void loadShiftsForMonth(const QDate &date);

    /// -1 where the table holds none.
    int shiftFor(int uid, int dayOfMonth) const;

    /// Hours as a number for any positive duration, or its text above 59 seconds; else empty.
    static QVariant strOrDecTimeFormat(double seconds, bool decimal);

    /// Month keys are year * 100 + month.
    QDate monthToDate(unsigned month) const;
    unsigned dateToMonth(const QDate &date) const;

private:
    void produce(const ReportRun &run);
    QString fileName(const QDate &today, bool xlsx) const;
    bool buildWorkbook(const QString &path, const DailyAttenOptions &options, const ReportRun &run);
    bool writeWorkbook(const QString &path, const DailyAttenOptions &options,
                       const DailyAttenData &data, const QVector<DailyAttenPerson> &people,
                       const ReportRun &run) const;
    bool writeRows(DailyAttenSheet &sheet, const DailyAttenData &data,
                   const QVector<DailyAttenPerson> &people, const ReportRun &run) const;

    ZasDbSettings settings;
    QString prefix;
    QString uids; ///< the setting "uids" of the last run; no query asks for it
    QHash<QPair<int, int>, int> shifts; ///< by uid and day of month
};
