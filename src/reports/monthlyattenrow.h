#pragma once

#include <QHash>
#include <QString>

#include <optional>

/// What the product reckons of a person's month, in hours; `vouchers` is a count.
struct AttMonthValues {
    double holidayFond = 0;
    double holidaySum = 0;
    double bonus = 0;
    double day6sum = 0;
    double day7sum = 0;
    double night = 0;
    double vouchers = 0;
};

/// One person's month. Durations are hours.
struct MonthlyAttenRow {
    unsigned int pid = 0; ///< personal number, 0 when unknown
    QString pamId;        ///< number in the payroll system, empty when unknown
    QString name;
    double fond = 0; ///< planned
    double overtime = 0;
    std::optional<double> work;                ///< shown whenever there is a value, also 0
    QHash<unsigned int, double> interruptions; ///< by interruption id
    AttMonthValues values;
};
