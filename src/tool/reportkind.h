#pragma once

#include "reports/dailyattenreport.h"
#include "reports/monthlyattenreport.h"

#include <QSqlDatabase>
#include <QString>

#include <optional>

/// Which of a schema's two reports. What differs between them stands here, so that no command asks.
enum class ReportKind { Daily, Monthly };

/// What operators call it: "daily" or "monthly".
QString kindName(ReportKind kind);
/// The other way round; nothing for any other word, in capitals too.
std::optional<ReportKind> kindFromName(const QString &name);

/// The report's class, as its log lines and its lock begin. It lives as long as the program.
const char *reportClass(ReportKind kind);
/// What the keys of its settings begin with, the full stop included.
QString settingsPrefix(ReportKind kind);

/// Calls `use` with the report itself, over that connection, and gives back what it gives. The
/// report is gone afterwards, so that `use` must keep nothing of it.
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
