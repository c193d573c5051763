#include "reports/reportclaim.h"

#include "common/freshquery.h"
#include "db/varstable.h"
#include "reports/reportrun.h"
#include "reports/reporttransaction.h"

#include <algorithm>

namespace
{

// The server's numbers, as text like the driver has them.
const QLatin1String lockWaitTimeout("1205");
const QLatin1String statementTimeout("1969");
const QLatin1String statementTimeoutOfMySql("3024");
const QLatin1String interrupted("1317");
const QLatin1String deadlock("1213");     // also a conflict between two nodes of a cluster
const QLatin1String changedSince("1020"); // the row is newer than the transaction's view

/// A row that does not exist is hard to lock: the lock on its place keeps nobody from taking the
/// same, or is none at all at the isolation level READ COMMITTED. So it is made first. Rolled back
/// with the run, it leaves no trace.
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

/// Returns whether the wait for the row was cut short, so that nobody knows whose the report is.
bool isWaitCutShort(const QString &errorCode)
{
    return errorCode == lockWaitTimeout || errorCode == statementTimeout ||
           errorCode == statementTimeoutOfMySql || errorCode == interrupted;
}

Claim claimAfter(const QString &errorCode)
{
    if (isWaitCutShort(errorCode))
        return Claim::Blocked;
    // Without the right to write there is no lock, and the report goes out without its mark.
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
    // Several rows only where `name` is not unique: made is made, whichever of them says so.
    for (const QVariant &value : locked.value())
        settings.lastGenerated = std::max(settings.lastGenerated, value.toLongLong());
    return scheduleVerdict(settings, run.now) == ScheduleVerdict::Due ? Claim::Ours : Claim::Made;
}

bool isConflict(const QString &errorCode)
{
    return errorCode == deadlock || errorCode == changedSince;
}
