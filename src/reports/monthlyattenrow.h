#pragma once

#include <QHash>
#include <QString>

#include <optional>

/// What the product computed for a person's month, in hours; `vouchers` is a count.
struct AttMonthValues {
    double holidayFond = 0;
    double holidaySum = 0;
    double bonus = 0;
    double day6sum = 0;
    double day7sum = 0;
    double night = 0;
    double vouchers = 0;
};

/// One person's month.
struct MonthlyAttenRow {
    unsigned int pid = 0; ///< personal number, 0 if unknown
    QString pamId;        ///< number in the payroll system, empty if unknown
    QString name;
    double plannedHours = 0;
    double overtimeHours = 0;
    std::optional<double> workedHours;             ///< shown if there is a value, even 0
    QHash<unsigned int, double> interruptionHours; ///< the keys are interruption ids
    AttMonthValues values;
};
