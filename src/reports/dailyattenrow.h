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

/// All interruptions of one kind on one day.
struct InterruptionTotal {
    double seconds = 0;
    int count = 0;
};

/// What one person did on one day. Durations are seconds.
struct DailyAttenRow {
    int dayOfMonth = 0;
    int shift = 0; ///< shown only above 0
    QString centre;
    double worked = 0;
    double unworked = 0; ///< the day's fund less what was worked
    double overtime = 0;
    double unrecognised = 0;
    double rounding = 0;
    double moved = 0;
    double penalty = 0;
    QMap<QString, InterruptionTotal> interruptions; ///< by shortcut
    bool complete = true; ///< false when a query failed, so that values may be missing
};
