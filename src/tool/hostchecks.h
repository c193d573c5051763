#pragma once

#include "tool/finding.h"

#include <QDateTime>

#include <functional>

struct Machine;
struct ReportKind;
struct ReportSettings;
struct StoredSettings;

/// Returns how many seconds ago somebody last wrote what a scan reads: the list of the schemas, or
/// the settings of the schema. By the server's clock; the largest number if unknown.
using SecondsSinceChange = std::function<qint64()>;

/**
 * Finds what keeps the hosts of this machine from making a report: they are paused, have not found
 * the schema, or failed to make the report. If none of this is found, checks whether the report is
 * overdue, for which no host needs to answer.
 *
 * Part of SchemaJudge's judgement of an enabled report.
 */
void checkHosts(const ReportKind &kind, const StoredSettings &stored, const Machine &machine,
                const QDateTime &now, const SecondsSinceChange &sinceChange, Findings &findings);

/// Returns whether an enabled report went out when it was last due, and no host of this machine
/// says that its last run failed.
bool wentOut(const ReportKind &kind, const ReportSettings &settings, const Machine &machine,
             const QString &token, const QDateTime &now);
