#pragma once

#include "reports/reportschedule.h"

#include <optional>

class ZasDbSettings;

/**
 * One tick of a report: its settings when it is due at `now`, none when it is not.
 *
 * `report` is the report's class, as its log lines begin; `prefix` that of its settings.
 */
std::optional<ReportSettings> dueReport(const char *report, const QString &prefix,
                                        ZasDbSettings &settings, const QDateTime &now);

/// Stores the current time as the report's "lastGenerated"; a failure is logged.
void storeLastGenerated(const char *report, const QString &prefix, ZasDbSettings &settings);

/// True, with a warning, when the thread was asked to stop: a report in the making then ends like
/// a failed one, so that a stop need not wait for it.
bool isInterrupted(const char *report);
