#pragma once

#include "reports/storedoption.h"

/**
 * The options of the monthly report. Their keys in `vars` have no prefix, because the product's own
 * exports use them too.
 */
struct MonthlyAttenOptions : StoredOptions<MonthlyAttenOptions> {
    int advancedOvertime = 0;   ///< 1: overtime from `saldo_p`; otherwise from `totalSaldo`
    bool payrollNumber = false; ///< shown instead of the personal number
    QStringList extraShortcuts; ///< interruptions that get a column each; not trimmed

    static const std::vector<StoredOption<MonthlyAttenOptions>> &table();
};
