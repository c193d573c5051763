#pragma once

#include "db/varstable.h"
#include "reports/reportkind.h"

#include <QDateTime>

/// The consequences of changing a report's settings.
struct SetOutcome {
    bool isForNobody = false;  ///< it is enabled, but has no recipient
    bool isDueNow = false;     ///< it goes out at the next tick of a host that serves the schema
    bool waitsForScan = false; ///< it is the schema's first enabled report: the next scan finds it

    /// Both maps hold the settings of all reports of the schema, by their full keys.
    SetOutcome(const ReportKind &kind, const VarsTable::Values &before,
               const VarsTable::Values &after, const QDateTime &now);
};
