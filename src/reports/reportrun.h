#pragma once

#include "reports/reportschedule.h"

#include <QSqlDatabase>

#include <functional>

/// Whether a run stores "lastGenerated", the time that the schedule checks to decide whether the
/// report has been made.
enum class CountsAsMade {
    Never,       ///< the run does not affect the schedule
    WithAnyMail, ///< if at least one mail was queued
    Always,      ///< even if no mail could be queued
};

/// The parameters of one run of a report.
struct ReportRun {
    ReportSettings settings;
    QDateTime now;
    CountsAsMade countsWhen = CountsAsMade::Never;
    /// Whether the schedule started the run, rather than an operator. A scheduled run claims its
    /// report, and ends if another host has already claimed it.
    bool isScheduled = false;
    /// The server's id of the connection on which the run began, 0 if unknown. If that connection
    /// is lost, the server rolls the run's mails back, so the run must not use another connection.
    qulonglong connectionId = 0;
    /// Called after each row, with the total number of rows.
    std::function<void(int)> progress = nullptr;
    /// Polled at each row and each mail. Returns whether to stop the run. The operator's commands
    /// need it because QThread::requestInterruption() has no effect on the main thread.
    std::function<bool()> isCancelled = nullptr;
};

/// Returns the parameters of a run that is not scheduled.
ReportRun runFor(const QStringList &recipients, const QDateTime &now, CountsAsMade countsWhen,
                 const QSqlDatabase &database);

/// Returns whether the run should end: it was cancelled, or its thread was asked to stop.
bool isStopRequested(const ReportRun &run);

/// Asks the server whether the run has lost the connection on which it began. Returns false if the
/// id of that connection is unknown.
bool isConnectionLost(const ReportRun &run, const QSqlDatabase &database);
