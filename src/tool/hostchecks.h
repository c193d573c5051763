#pragma once

#include "tool/finding.h"

#include <QDateTime>

#include <functional>

struct Machine;
struct ReportKind;
struct ReportSettings;
struct StoredSettings;

/// Returns how many seconds ago the tables that a scan reads were last written: the table `schemas`
/// or the schema's table `vars`, whichever is more recent. By the server's clock; the largest
/// number if unknown.
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

/// Returns whether an enabled report went out when it was last due, and no host of this machine
/// says that its last run failed.
bool wentOut(const ReportKind &kind, const ReportSettings &settings, const Machine &machine,
             const QString &token, const QDateTime &now);
