#pragma once

#include <QSqlDatabase>
#include <QString>

struct ReportRun;

/// Whose the report is that a run has made ready.
enum class Claim {
    Ours,      ///< until the transaction ends; or the server could not be asked
    Made,      ///< another host has made it meanwhile
    Contested, ///< another host is at it, and the server rolled this transaction back
    Blocked    ///< somebody holds the row for longer than the server lets others wait
};

/**
 * Claims a scheduled report for its run, inside the transaction that queues its mails and before
 * the first of them.
 *
 * "lastGenerated", stored under `key`, is read again and its row locked, and the schedule is asked
 * once more for the run's moment. The lock lasts as long as the transaction, which stores the new
 * value: of two runs that got this far the slower one waits here and finds the report made, or, on
 * another node of a cluster, finds its transaction rolled back here, later, or at the commit.
 *
 * A table without transactions has no such locks; there the run only looks again.
 */
Claim claimReport(const QSqlDatabase &database, const QString &key, const ReportRun &run);

/// Returns whether the server's error with this number says that another transaction was faster.
bool isConflict(const QString &errorCode);
