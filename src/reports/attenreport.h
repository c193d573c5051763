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
 * The base class of both attendance reports. A report is a workbook of the month so far, mailed to
 * its recipients once a day.
 *
 * The worker's tick calls doWork(), which takes the following steps. If one of them fails, the call
 * ends, and the next tick starts over.
 *
 *   1. Schedule: checks whether the report is due now.
 *   2. Gate: waits while too many runs of this process are working.
 *   3. Lock: takes the report's named lock on the database server, unless another host has it.
 *   4. Schedule again: the lock's previous holder may have made the report.
 *   5. Workbook, saveWorkbook(): reads and writes the rows, then saves the file.
 *   6. Mails, queueMails(): one transaction claims the report, queues a mail per recipient and
 *      stores "lastGenerated". On a cluster, where locks are local to a node, only the claim keeps
 *      two hosts from mailing the same report.
 *
 * The moment of the run, ReportRun::now, does not change after step 4, so that a run that lasts
 * past midnight makes the report of one day. A request to stop the thread takes effect at the gate,
 * at the next row or, if the mails can be rolled back, at the next mail. A lost connection ends the
 * run, because the server then releases the lock and rolls the transaction back.
 *
 * Use a report in the thread that owns the connection. Errors and outcomes are logged.
 */
class AttenReport : public ReportBase
{
    Q_OBJECT

public:
    AttenReport(const ReportKind &kind, const QSqlDatabase &db, QObject *parent);

    void doWork() override;

    /// Runs steps 5 and 6 for the month of `now`, whether or not the report is due. Claims nothing.
    void makeReport(const QStringList &emails, const QDateTime &now = QDateTime::currentDateTime());

    /// Runs step 5. The extension of `path` determines the format. On an error, logs it, returns
    /// false and leaves an existing file unchanged.
    bool saveWorkbook(const QString &path, const ReportRun &run);

    /// Runs step 6. Returns the number of mails queued, or -1 if it is unknown because the
    /// connection was lost during the commit.
    int queueMails(const QString &path, const ReportRun &run);

    /// Returns the name of the workbook's file.
    QString fileName(const QDate &today);

    /// Returns a mail with the file attached, but without a recipient. If the file cannot be read
    /// or is too large, logs an error and leaves `data` empty.
    MailRecord makeMail(const QString &path, const QDate &today = QDate::currentDate());

    /// Returns the subject of the mails of `today`, in the installed language.
    QString mailSubject(const QDate &today) const { return mailTexts(today).subject; }

protected:
    struct MailTexts {
        QString subject;
        QString body;
    };

    /// Reads the options. Called before fileNameByOptions() and createContent(), which use them.
    virtual void loadOptions() = 0;
    virtual QString fileNameByOptions(const QDate &today) const = 0;
    virtual std::unique_ptr<ReportContent> createContent(const ReportRun &run) = 0;
    /// Returns the log's name for the function that creates the book.
    virtual const char *bookFactoryName() const = 0;
    virtual MailTexts mailTexts(const QDate &today) const = 0;

    ZasDbSettings settings;

private:
    /// Why a run ends early. None means that it goes on.
    enum class End {
        None,
        StoppedInRows,
        StoppedInMails,
        ConnectionLost,
        RolledBack,
        NodeNotReady,
        NotBegun,
        NothingQueued,
        MadeElsewhere,
        Contested,
        Blocked,
        NotCommitted,
        LostInCommit,
    };

    ReportSettings readSettings() const;
    void produce(const ReportRun &run);
    int buildWorkbook(const QString &path, const ReportRun &run);
    bool fits(const BookFormat &format, int rowCount) const;
    bool writeBook(const QString &path, ReportContent &content, const ReportRun &run) const;
    End writeRows(ReportContent &content, const ReportRun &run) const;
    End begin(const ReportRun &run, ReportTransaction &transaction) const;
    End queueAll(const MailRecord &mail, const ReportRun &run, ReportTransaction &transaction,
                 int &queued);
    End queueForEach(MailRecord mail, const ReportRun &run, ReportTransaction &transaction,
                     int &queued) const;
    End queueOne(const MailRecord &mail, const ReportRun &run, int &queued) const;
    static End endAfter(const QString &errorCode, const ReportRun &run);
    End interruptionOf(const ReportRun &run, ReportTransaction &transaction) const;
    End storeLastGenerated(const ReportRun &run) const;
    End commit(const ReportRun &run, ReportTransaction &transaction) const;
    void logEnd(End end, const ReportRun &run) const;

    const ReportKind &kind;
};
