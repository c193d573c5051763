#pragma once

#include "db/varstable.h"
#include "reports/reportkind.h"

#include <QDateTime>

/// The consequences of changing a report's settings.
struct SetOutcome {
    bool isForNobody = false;  ///< the report is enabled, but has no valid recipient
    bool isDueNow = false;     ///< the report goes out at the next tick of a host
    bool waitsForScan = false; ///< hosts find the schema only at their next scan

    /// `before` and `after` hold the settings of all reports of the schema, by their full keys.
    SetOutcome(const ReportKind &kind, const VarsTable::Values &before,
               const VarsTable::Values &after, const QDateTime &now);
};
