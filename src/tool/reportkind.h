#pragma once

#include "reports/dailyattenreport.h"
#include "reports/monthlyattenreport.h"

#include <QSqlDatabase>
#include <QString>

#include <optional>

enum class ReportKind { Daily, Monthly };

/// What operators call it: "daily" or "monthly".
QString kindName(ReportKind kind);
std::optional<ReportKind> kindFromName(const QString &name);

/// The report's class, as its log lines begin.
const char *reportClass(ReportKind kind);
/// What the keys of its settings begin with.
QString settingsPrefix(ReportKind kind);

/// Calls `use` with the report itself, over that connection.
template <typename Use>
auto withReport(ReportKind kind, const QSqlDatabase &database, Use use)
{
    if (kind == ReportKind::Daily) {
        DailyAttenReport report(database, nullptr);
        return use(report);
    }
    MonthlyAttenReport report(database, nullptr);
    return use(report);
}
