#pragma once

#include "reports/reportschedule.h"

#include <QSqlDatabase>

#include <functional>

class ZasDbSettings;

/// A run of a report that is due: who gets it, at which moment, over which connection.
struct ReportRun {
    ReportSettings settings;
    QDateTime now;
    qulonglong connectionId = 0; ///< the server's number when the run began, 0 if unknown
    bool mark = true;            ///< whether the run counts: "lastGenerated" is written
    bool byHand = false;         ///< an operator's run: it never counts without a mail
    /// Called by the daily report, which may take long, after each row with the number of all rows.
    std::function<void(int)> progress = nullptr;
    /// Asked at each row, and at each mail that can be taken back: true ends the run as an
    /// interruption of the thread does.
    std::function<bool()> isCancelled = nullptr;
};

/// A run for these recipients at that moment, whether due or not.
ReportRun makeRun(const QStringList &recipients, const QDateTime &now,
                  const QSqlDatabase &database);

/**
 * One tick of a report: calls `make` when the report is due now and no other host is making it.
 *
 * `report` is the report's class, as its log lines begin; `prefix` that of its settings.
 */
void runWhenDue(const char *report, const QString &prefix, ZasDbSettings &settings,
                const QSqlDatabase &database, const std::function<void(const ReportRun &)> &make);

/// Stores the current time as the report's "lastGenerated"; a failure is logged.
void storeLastGenerated(const char *report, const QString &prefix, ZasDbSettings &settings);

/// Whether the thread was asked to stop, or the run.
bool isStopRequested(const ReportRun &run);

/// True, with a warning, when the thread was asked to stop, or the run: a report in the making then
/// ends like a failed one, so that a stop need not wait for it.
bool isInterrupted(const char *report, const ReportRun &run);

/// True, with a warning, when the run no longer has the connection that it began on. What was
/// queued over that one is gone, and what would follow would stand alone on another.
bool isConnectionLost(const char *report, const QSqlDatabase &database, qulonglong connectionId);
