#include "reports/reportrun.h"

#include "db/zasdbsettings.h"

#include <QThread>

std::optional<ReportSettings> dueReport(const char *report, const QString &prefix,
                                        ZasDbSettings &settings, const QDateTime &now)
{
    qInfo("%s::doWork()", report);
    const auto reportSettings =
        ReportSettings::fromValues(settings.variableGetMultiple(prefix), prefix);
    const ReportReason reason = reportReason(reportSettings, now);
    if (reason == ReportReason::NoRecipients)
        qWarning("%s - no e-mail addresses!", report);
    return reason == ReportReason::Due ? std::make_optional(reportSettings) : std::nullopt;
}

void storeLastGenerated(const char *report, const QString &prefix, ZasDbSettings &settings)
{
    const qint64 generated = QDateTime::currentSecsSinceEpoch();
    if (!settings.variableSet(prefix + QStringLiteral("lastGenerated"), generated))
        qCritical("%s::makeReport() - 'lastGenerated' NOT SET!", report);
}

bool isInterrupted(const char *report)
{
    if (!QThread::currentThread()->isInterruptionRequested())
        return false;
    qWarning("%s::makeReport() - interrupted, nothing saved and no mail!", report);
    return true;
}
