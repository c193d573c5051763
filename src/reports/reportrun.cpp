#include "reports/reportrun.h"

#include "db/serverconnection.h"

#include <QThread>

ReportRun runFor(const QStringList &recipients, const QDateTime &now, CountsAsMade countsWhen,
                 const QSqlDatabase &database)
{
    ReportRun run;
    run.settings.recipients = recipients;
    run.now = now;
    run.countsWhen = countsWhen;
    run.connectionId = serverConnectionId(database);
    return run;
}

bool isStopRequested(const ReportRun &run)
{
    return (run.isCancelled && run.isCancelled()) ||
           QThread::currentThread()->isInterruptionRequested();
}

bool isConnectionLost(const ReportRun &run, const QSqlDatabase &database)
{
    return run.connectionId != 0 && serverConnectionId(database) != run.connectionId;
}
