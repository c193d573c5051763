#pragma once

#include "tool/finding.h"

#include <QDateTime>
#include <QSqlDatabase>

struct Machine;
struct ReportKind;
struct ReportSettings;
struct StoredSettings;

/**
 * Finds what keeps the hosts of this machine from making a report: they are paused, have not found
 * the schema, or failed to make the report. If none of this is found, checks whether the report is
 * overdue, for which no host needs to answer.
 *
 * Part of SchemaJudge's judgement of an enabled report.
 */
void checkHosts(const QSqlDatabase &database, const ReportKind &kind, const StoredSettings &stored,
                const Machine &machine, const QDateTime &now, Findings &findings);

/// Returns whether an enabled report went out when it was last due, and no host of this machine
/// says that its last run failed.
bool wentOut(const ReportKind &kind, const ReportSettings &settings, const Machine &machine,
             const QString &token, const QDateTime &now);
