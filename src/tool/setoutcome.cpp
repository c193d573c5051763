#include "tool/setoutcome.h"

#include "tool/storedsettings.h"

#include <algorithm>

namespace
{

/// Evaluates "enabled" as the scan does.
bool isExactlyOne(const ReportKind &kind, const VarsTable::Values &values)
{
    return values.value(kind.key("enabled")).toInt() == 1;
}

bool isFoundByScan(const VarsTable::Values &values)
{
    const auto &kinds = reportKinds();
    return std::any_of(kinds.cbegin(), kinds.cend(),
                       [&values](const ReportKind *kind) { return isExactlyOne(*kind, values); });
}

} // namespace

SetOutcome::SetOutcome(const ReportKind &kind, const VarsTable::Values &before,
                       const VarsTable::Values &after, const QDateTime &now)
{
    const ReportSettings settings = kind.settingsOf(after);
    isForNobody = settings.enabled && Recipients(settings.recipients).wellFormed.isEmpty();
    isDueNow = !isForNobody && scheduleVerdict(settings, now) == ScheduleVerdict::Due;
    waitsForScan = isExactlyOne(kind, after) && !isFoundByScan(before);
}
