#pragma once

#include <QMap>
#include <QString>

/// One person of the daily report.
struct DailyAttenPerson {
    unsigned int uid = 0;
    double personalNumber = 0;
    QString name; ///< surname, name and titles
    QString group;
    QString department;
    QString homeBranch;
};

/// The sum of one person's interruptions of one kind on one day.
struct InterruptionTotal {
    double seconds = 0;
    int count = 0;
};

/// What one person did on one day.
struct DailyAttenRow {
    int dayOfMonth = 0;
    int shift = -1; ///< -1 if there is none; shown if it is above 0
    QString branch;
    double workedSeconds = 0;
    double unworkedSeconds = 0; ///< the planned time minus the worked time
    double overtimeSeconds = 0;
    double unrecognisedSeconds = 0;
    double roundingSeconds = 0;
    double movedSeconds = 0;
    double penaltySeconds = 0;
    /// The keys are `inters.shortcut`, the short names of the kinds of interruption.
    QMap<QString, InterruptionTotal> interruptions;
    bool complete = true; ///< false if values may be missing: a query failed or the run is stopped
};

/// A kind of record in `atten_data` that corrects a day. `seconds` is the value to which the
/// record's duration is added.
struct Correction {
    int iid;
    double DailyAttenRow::*seconds;
};

constexpr Correction corrections[] = {
    {1000, &DailyAttenRow::unrecognisedSeconds},
    {1001, &DailyAttenRow::roundingSeconds},
    {1002, &DailyAttenRow::penaltySeconds},
    {1003, &DailyAttenRow::movedSeconds},
};

/// Returns the correction with the id `iid`, or null.
inline const Correction *correctionOf(int iid)
{
    for (const Correction &correction : corrections) {
        if (correction.iid == iid)
            return &correction;
    }
    return nullptr;
}
