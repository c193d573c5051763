#pragma once

#include <QSqlDatabase>
#include <QString>

class ReportTransaction;
struct ReportRun;

/// Which run may mail a report.
enum class Claim {
    Ours,      ///< this one, until its transaction ends
    Unclaimed, ///< this one, but nothing keeps others from it: the row cannot be locked
    Made,      ///< another host has made it meanwhile
    Contested, ///< another host is mailing it, and the server rolled this transaction back
    Blocked    ///< another connection held the row for longer than the server lets us wait
};

/**
 * Begins the transaction that queues the mails of a scheduled report, and claims the report for its
 * run. If the server refuses the transaction, nothing is claimed.
 *
 * "lastGenerated", stored under `key`, is read again and its row locked, and the schedule is asked
 * once more for the run's moment. The lock lasts as long as the transaction, which stores the new
 * value. Of two runs on one server, the slower waits here and then finds the report made. On
 * another node of a cluster, its transaction is rolled back: here, at a later statement, or at the
 * commit.
 *
 * A table without transactions has no such locks; there the run only looks again.
 */
Claim claimReport(const QSqlDatabase &database, const QString &key, const ReportRun &run,
                  ReportTransaction &transaction);

/// Returns whether the server's error with this number says that another transaction was faster.
bool isConflict(const QString &errorCode);
