#pragma once

#include "reports/storedoption.h"

/**
 * What the monthly report shows. The keys have no prefix, because the product's own exports use
 * them too.
 */
struct MonthlyAttenOptions : StoredOptions<MonthlyAttenOptions> {
    int advancedOvertime = 0;   ///< exactly 1: overtime from `saldo_p` instead of `totalSaldo`
    bool payrollNumber = false; ///< shown instead of the personal number
    QStringList extraShortcuts; ///< a column for each of these interruptions; not trimmed

    static const std::vector<StoredOption<MonthlyAttenOptions>> &table();
};
