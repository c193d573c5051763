#pragma once

#include <QSqlDatabase>
#include <QString>

class ReportTransaction;
struct ReportRun;

/// Whether a run may mail its report.
enum class Claim {
    Ours,         ///< yes, until its transaction ends
    Unclaimed,    ///< yes, but so may other runs, because the row cannot be locked
    Made,         ///< no: another host has made it meanwhile
    Contested,    ///< no: another host is mailing it, and the server rolled this transaction back
    NodeNotReady, ///< no: the node of the cluster executes no statements for now
    Blocked       ///< no: another connection holds the row, and the wait for it was cut short
};

/**
 * Begins the transaction that queues the mails of a scheduled report, and claims the report for
 * `run`. If the server refuses the transaction, nothing is claimed.
 *
 * Locks the row `key`, which holds "lastGenerated", and reads it again. Then checks once more
 * whether the report was due at the moment of the run. The lock lasts until the end of the
 * transaction, which stores the new value. Of two runs on one server, the slower one waits here and
 * then finds the report made. On different nodes of a cluster, the slower run's transaction is
 * rolled back: here, at a later statement, or at the commit.
 *
 * A table without transactions has no such locks; there, this function only checks again.
 */
Claim claimReport(const QSqlDatabase &database, const QString &key, const ReportRun &run,
                  ReportTransaction &transaction);

/// Returns whether this error of the server means that another transaction was faster.
bool isConflict(const QString &errorCode);

/// Returns whether this error means that the node of a cluster executes no statements for now, for
/// example because it has lost the other nodes.
bool isNodeNotReady(const QString &errorCode);
