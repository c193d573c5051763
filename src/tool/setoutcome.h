#pragma once

#include "db/varstable.h"
#include "reports/reportkind.h"

#include <QDateTime>

/// The consequences of changing a report's settings.
struct SetOutcome {
    bool isForNobody = false;  ///< enabled, but nobody would get it
    bool isDueNow = false;     ///< goes out at the next tick of a host that serves the schema
    bool waitsForScan = false; ///< enabled, and so far no host had a reason to serve the schema

    /// Both maps hold the settings of all reports of the schema, by their full keys.
    SetOutcome(const ReportKind &kind, const VarsTable::Values &before,
               const VarsTable::Values &after, const QDateTime &now);
};
