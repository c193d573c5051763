#include "reports/reportclaim.h"

#include "common/freshquery.h"
#include "db/varstable.h"
#include "reports/reportrun.h"
#include "reports/reporttransaction.h"

#include <algorithm>

namespace
{

// The server's error codes, which the driver reports as text.
const QLatin1String lockWaitTimeout("1205");
const QLatin1String statementTimeout("1969");
const QLatin1String statementTimeoutOfMySql("3024");
const QLatin1String interrupted("1317");
const QLatin1String deadlock("1213");     // or a conflict between two nodes of a cluster
const QLatin1String changedSince("1020"); // the row is newer than the transaction's view

/// Begins the transaction and locks the row of `key`. If the row is missing, inserts it first: the
/// server would otherwise lock only a gap between rows, which two transactions can lock at once,
/// and with READ COMMITTED it would lock nothing. If the run is rolled back, so is the insertion.
Result<QVector<QVariant>> lockRow(const VarsTable &vars, const QString &key,
                                  ReportTransaction &transaction)
{
    QSqlQuery query = transaction.begin(VarsTable::lockStatement(key));
    if (!query.isActive())
        return errorOf(query);
    const QVector<QVariant> found = VarsTable::lockedValues(query);
    if (!found.isEmpty())
        return found;
    const Result<bool> inserted = vars.insertMissing(key, 0);
    if (!inserted.isOk())
        return Error{inserted.error(), inserted.errorCode()};
    return vars.lock(key);
}

/// Returns whether the wait for the row was cut short. If so, another run may be making the report.
bool isWaitCutShort(const QString &errorCode)
{
    return errorCode == lockWaitTimeout || errorCode == statementTimeout ||
           errorCode == statementTimeoutOfMySql || errorCode == interrupted;
}

Claim claimAfter(const QString &errorCode)
{
    if (isWaitCutShort(errorCode))
        return Claim::Blocked;
    if (isNodeNotReady(errorCode))
        return Claim::NodeNotReady;
    // A conflict means that another run claims the report. After any other error, such as a missing
    // right to write, the row cannot be locked, and the report is mailed unclaimed.
    return isConflict(errorCode) ? Claim::Contested : Claim::Unclaimed;
}

} // namespace

Claim claimReport(const QSqlDatabase &database, const QString &key, const ReportRun &run,
                  ReportTransaction &transaction)
{
    const Result<QVector<QVariant>> locked = lockRow(VarsTable(database), key, transaction);
    if (!locked.isOk())
        return claimAfter(locked.errorCode());
    ReportSettings settings = run.settings;
    // If the column `name` is not unique, there may be several rows. The latest value counts.
    for (const QVariant &value : locked.value())
        settings.lastGenerated = std::max(settings.lastGenerated, value.toLongLong());
    return scheduleVerdict(settings, run.now) == ScheduleVerdict::Due ? Claim::Ours : Claim::Made;
}

bool isConflict(const QString &errorCode)
{
    return errorCode == deadlock || errorCode == changedSince;
}

bool isNodeNotReady(const QString &errorCode)
{
    return errorCode == QLatin1String("1047");
}
