#pragma once

#include <QSqlDatabase>
#include <QString>

class ReportTransaction;
struct ReportRun;

/// Whether a run may mail its report.
enum class Claim {
    Ours,         ///< yes, until the transaction ends
    Unclaimed,    ///< yes, but other runs may mail it, too, because the row cannot be locked
    Made,         ///< no: another host has made the report meanwhile
    Contested,    ///< no: another host claims the report; the server rolled this transaction back
    NodeNotReady, ///< no: the cluster node executes no statements for now
    Blocked       ///< no: another connection has locked the row, and the wait was cut short
};

/**
 * Begins the transaction that queues the mails of a scheduled report, and claims the report for
 * `run`. If the server refuses the transaction, nothing is claimed.
 *
 * Locks and reads the row `key`, which holds "lastGenerated". Then checks once more whether the
 * report was due at the moment of the run. The lock lasts until the end of the transaction, which
 * stores the new value. If two runs meet on one server, the slower one waits in this function and
 * then finds that the report is made. If they meet on two nodes of a cluster, the slower run's
 * transaction is rolled back: in this function, at a later statement, or at the commit.
 *
 * If the table does not support transactions, this function locks nothing and only checks again.
 */
Claim claimReport(const QSqlDatabase &database, const QString &key, const ReportRun &run,
                  ReportTransaction &transaction);

/// Returns whether this error code of the server means that the transaction lost a conflict with
/// another one.
bool isConflict(const QString &errorCode);

/// Returns whether this error code means that the cluster node executes no statements for now, for
/// example because it has lost the other nodes.
bool isNodeNotReady(const QString &errorCode);
