#pragma once

#include "reports/reportschedule.h"

#include <QSqlDatabase>

#include <functional>

/// When a run counts as made: "lastGenerated" is stored, and the report is not due again that day.
enum class CountsAsMade {
    Never,       ///< an operator's run beside the schedule
    WithAnyMail, ///< once a mail is in the queue
    Always,      ///< also when not one mail could be queued
};

/// One run of a report: for whom, at which moment, over which connection.
struct ReportRun {
    ReportSettings settings;
    QDateTime now;
    CountsAsMade countsWhen = CountsAsMade::Never;
    /// Whether the schedule started the run: it then ends if another host was faster. False for an
    /// operator's run, whatever it counts as.
    bool isScheduled = false;
    /// The server's number of the connection when the run began, 0 if unknown. Mails queued over
    /// that connection are rolled back when it is lost; a new one must not continue the run.
    qulonglong connectionId = 0;
    /// Called after each row, with the total.
    std::function<void(int)> progress = nullptr;
    /// Polled per row, and per mail while rollback is possible: true ends the run as an
    /// interruption of the thread does. For the main thread, which knows no interruption.
    std::function<bool()> isCancelled = nullptr;
};

/// Returns a run for these recipients at that moment, due or not.
ReportRun runFor(const QStringList &recipients, const QDateTime &now, CountsAsMade countsWhen,
                 const QSqlDatabase &database);

/// Returns whether the run is to end: the thread was asked to stop, or the run was cancelled.
bool isStopRequested(const ReportRun &run);

/// Asks the server whether the run still has the connection that it began on.
bool isConnectionLost(const ReportRun &run, const QSqlDatabase &database);
