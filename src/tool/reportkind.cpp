#include "tool/reportkind.h"

QString kindName(ReportKind kind)
{
    return kind == ReportKind::Daily ? QStringLiteral("daily") : QStringLiteral("monthly");
}

std::optional<ReportKind> kindFromName(const QString &name)
{
    for (const ReportKind kind : {ReportKind::Daily, ReportKind::Monthly}) {
        if (name == kindName(kind))
            return kind;
    }
    return std::nullopt;
}

// Written out: the lock that hosts hold carries it, whatever the classes are called one day.
const char *reportClass(ReportKind kind)
{
    return kind == ReportKind::Daily ? "DailyAttenReport" : "MonthlyAttenReport";
}

QString settingsPrefix(ReportKind kind)
{
    return kind == ReportKind::Daily ? QStringLiteral("autoReport.DailyAtten.")
                                     : QStringLiteral("autoReport.MonthlyAtten.");
}
