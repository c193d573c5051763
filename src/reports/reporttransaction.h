#pragma once

#include <QSqlDatabase>

/**
 * Holds the mails of one run and its "lastGenerated" together: all of them reach the database, or
 * none. Without a commit the end of the object takes everything back.
 *
 * Where the driver or the tables know no transactions, each statement counts at once.
 */
class ReportTransaction
{
public:
    /// `report` is the report's class, as its log lines begin; `connectionId` the server's number
    /// of the connection when the run began, 0 if unknown.
    ReportTransaction(const char *report, const QSqlDatabase &database, qulonglong connectionId);
    ~ReportTransaction();
    Q_DISABLE_COPY_MOVE(ReportTransaction)

    /// False, with one warning, when the run has lost its connection, or when the server took the
    /// transaction back by itself, as it does to end a deadlock.
    bool isIntact();

    /// Whether the mails that are queued so far can be taken back; asks the server.
    bool canTakeBack() const;
    /// From now on nothing of the run counts; the commit will fail, without a line in the log.
    void giveUp() { lost = true; }

    /// False when the commit failed, which is logged.
    bool commit();

private:
    bool setSavepoint();
    bool isRolledBack();

    const char *report;
    QSqlDatabase database;
    qulonglong connectionId;
    bool open;
    bool lost = false;
};
