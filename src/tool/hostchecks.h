#pragma once

#include "tool/finding.h"

#include <QDateTime>
#include <QSqlDatabase>

struct Machine;
struct ReportKind;
struct StoredSettings;

/**
 * Looks for what the hosts of this machine say about a report: they are paused, have not found the
 * schema, or failed at the report; and whether it is overdue. Without a host that answers, only
 * that can be said: the product's own server, or another machine, may serve the schema.
 *
 * Part of the judgement by SchemaJudge; for an enabled report.
 */
void checkHosts(const QSqlDatabase &database, const ReportKind &kind, const StoredSettings &stored,
                const Machine &machine, const QDateTime &now, Findings &findings);
