#include "reports/reportrun.h"

#include "db/serverconnection.h"
#include "db/zasdbsettings.h"
#include "reports/reportlock.h"

#include <QThread>

ReportRun makeRun(const QStringList &recipients, const QDateTime &now, const QSqlDatabase &database)
{
    ReportRun run;
    run.settings.recipients = recipients;
    run.now = now;
    run.connectionId = serverConnectionId(database);
    return run;
}

void runWhenDue(const char *report, const QString &prefix, ZasDbSettings &settings,
                const QSqlDatabase &database, const std::function<void(const ReportRun &)> &make)
{
    qInfo("%s::doWork()", report);
    const auto read = [&] {
        return ReportSettings::fromValues(settings.variableGetMultiple(prefix), prefix);
    };
    ReportRun run{read(), QDateTime::currentDateTime()};
    ReportReason reason = reportReason(run.settings, run.now);
    if (reason == ReportReason::NoRecipients)
        qWarning("%s - no e-mail addresses!", report);
    if (reason != ReportReason::Due)
        return;

    const ReportLock lock(database, report);
    if (!lock.mayRun()) {
        qInfo("%s::doWork() - another host is making this report", report);
        return;
    }
    // Another host may have finished the report between the first look and the lock.
    run.settings = read();
    run.connectionId = lock.connectionId();
    reason = reportReason(run.settings, run.now);
    if (reason == ReportReason::Due)
        make(run);
}

void storeLastGenerated(const char *report, const QString &prefix, ZasDbSettings &settings)
{
    const qint64 generated = QDateTime::currentSecsSinceEpoch();
    if (!settings.variableSet(prefix + QStringLiteral("lastGenerated"), generated))
        qCritical("%s::makeReport() - 'lastGenerated' NOT SET!", report);
}

bool isStopRequested(const ReportRun &run)
{
    // The main thread knows no interruption; commands that work there cancel the run itself.
    return (run.isCancelled && run.isCancelled()) ||
           QThread::currentThread()->isInterruptionRequested();
}

bool isInterrupted(const char *report, const ReportRun &run)
{
    if (!isStopRequested(run))
        return false;
    qWarning("%s::makeReport() - interrupted, nothing saved and no mail!", report);
    return true;
}

bool isConnectionLost(const char *report, const QSqlDatabase &database, qulonglong connectionId)
{
    if (connectionId == 0 || serverConnectionId(database) == connectionId)
        return false;
    qWarning("%s::makeReport() - database connection lost, no mail queued!", report);
    return true;
}
