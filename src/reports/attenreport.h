#pragma once

#include "db/mailrecord.h"
#include "db/zasdbsettings.h"
#include "reports/reportrun.h"
#include "worker/reportbase.h"

#include <QDateTime>
#include <QStringList>

#include <memory>

struct BookFormat;
class ReportContent;
class ReportTransaction;
struct ReportKind;

/**
 * What both attendance reports are: a workbook of the month so far, mailed to its recipients once a
 * day.
 *
 * A tick, doWork(), takes these steps; the first that fails ends it, and the next tick begins anew:
 *
 *   1. Schedule: the report's settings say whether it is due now.
 *   2. Lock: no other host on this server is making it.
 *   3. Schedule again: the host that had the lock may have made it.
 *   4. Workbook, saveWorkbook(): rows are read and written; the file is saved.
 *   5. Mails, queueMails(): one transaction claims the report, and holds a mail per recipient and
 *      "lastGenerated". Hosts on several nodes of a cluster meet only here.
 *
 * `now` is taken once per tick, so that a report that runs past midnight stays one report. A stop
 * of the thread is noticed at every row, and at every mail while the mails can be rolled back. A
 * lost connection ends the run as well: the lock and the transaction are gone with it.
 *
 * Belongs to a worker and runs in its thread. Outcomes go to the log; what lasts is the workbook,
 * the mails and "lastGenerated".
 */
class AttenReport : public ReportBase
{
    Q_OBJECT

public:
    AttenReport(const ReportKind &kind, const QSqlDatabase &db, QObject *parent);

    void doWork() override;

    /// Makes, saves and queues the report for the month of `now`, due or not, as a scheduled run
    /// does from its step 4 on.
    void makeReport(const QStringList &emails, const QDateTime &now = QDateTime::currentDateTime());

    /// Step 4, for a workbook at any place. The extension of `path` chooses the format. Returns
    /// false, logged, when there is no workbook; a file that stood there is as it was then.
    bool saveWorkbook(const QString &path, const ReportRun &run);

    /// Reads the people alone. Returns how many rows the workbook of `run` has, -1, logged, when
    /// they cannot be read.
    int countRows(const ReportRun &run);

    /// Step 5. Returns how many mails are in the queue.
    int queueMails(const QString &path, const ReportRun &run);

    /// Returns the name that the workbook has in its mail.
    QString fileName(const QDate &today);

    /// Returns one mail with the file attached, its recipient open; without `data`, logged, if the
    /// file is unreadable.
    MailRecord makeMail(const QString &path, const QDate &today = QDate::currentDate());

    /// Returns the subject of that day's mails, in the language that is installed.
    QString mailSubject(const QDate &today) const { return mailTexts(today).subject; }

    /// Returns the statements that read the schema, as its options choose them, for nobody in
    /// particular: what the server cannot prepare, the report cannot read.
    QStringList statements();

protected:
    struct MailTexts {
        QString subject;
        QString body;
    };

    /// Reads the options again. Called before the functions below it, once per workbook.
    virtual void loadOptions() = 0;
    virtual QString fileNameByOptions(const QDate &today) const = 0;
    virtual std::unique_ptr<ReportContent> createContent(const ReportRun &run) = 0;
    /// Returns how the log names the creation of a book.
    virtual const char *bookFactoryName() const = 0;
    virtual MailTexts mailTexts(const QDate &today) const = 0;
    virtual QStringList statementsByOptions() const = 0;

    ZasDbSettings settings;

private:
    /// What ended a run before its time.
    enum class End {
        None,
        StoppedInRows,
        StoppedInMails,
        ConnectionLost,
        RolledBack,
        NotBegun,
        NothingQueued,
        MadeElsewhere,
        Contested,
        Blocked,
        NotCommitted,
    };

    ReportSettings readSettings() const;
    void produce(const ReportRun &run);
    int buildWorkbook(const QString &path, const ReportRun &run);
    bool fits(const BookFormat &format, int rowCount) const;
    bool writeBook(const QString &path, ReportContent &content, const ReportRun &run) const;
    End writeRows(ReportContent &content, const ReportRun &run) const;
    End begin(const ReportRun &run, ReportTransaction &transaction) const;
    End claim(const ReportRun &run) const;
    End queueAll(const MailRecord &mail, const ReportRun &run, ReportTransaction &transaction,
                 int &queued);
    End queueForEach(MailRecord mail, const ReportRun &run, ReportTransaction &transaction,
                     int &queued) const;
    End queueOne(const MailRecord &mail, const ReportRun &run, int &queued) const;
    End interruptionOf(const ReportRun &run, ReportTransaction &transaction) const;
    End storeLastGenerated(const ReportRun &run) const;
    End commit(const ReportRun &run, ReportTransaction &transaction) const;
    void logEnd(End end, const ReportRun &run) const;

    const ReportKind &kind;
};
