#pragma once

#include "tool/finding.h"

#include <QDateTime>

#include <functional>

struct Machine;
struct ReportKind;
struct ReportSettings;
struct StoredSettings;

/// Returns how many seconds ago, by the server's clock, a table that a scan reads was last written:
/// `schemas` or the schema's `vars`, whichever was written later. Returns the largest qint64 if
/// that is unknown.
using SecondsSinceChange = std::function<qint64()>;

/**
 * Adds findings about what keeps the hosts of this machine from making a report: they are paused,
 * have not found the schema, or failed to make the report. If there is no such finding, checks
 * whether the report is overdue, even if no host answers.
 *
 * Used by SchemaJudge for enabled reports.
 */
void checkHosts(const ReportKind &kind, const StoredSettings &stored, const Machine &machine,
                const QDateTime &now, const SecondsSinceChange &sinceChange, Findings &findings);

/// Returns whether an enabled report went out when it was last due. Also returns false if the host
/// that serves the schema says that the report's last run failed.
bool wentOut(const ReportKind &kind, const ReportSettings &settings, const Machine &machine,
             const QString &token, const QDateTime &now);
