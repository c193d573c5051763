#pragma once

#include "reports/storedoption.h"

/**
 * The options of the monthly report. Their keys in `vars` have no prefix, because the product's own
 * exports use them too.
 */
struct MonthlyAttenOptions : StoredOptions<MonthlyAttenOptions> {
    int advancedOvertime = 0;   ///< if 1, the overtime is `saldo_p`, otherwise `totalSaldo`
    bool payrollNumber = false; ///< shows the payroll number instead of the personal number
    QStringList extraShortcuts; ///< each gets a column for its kind of interruption; not trimmed

    static const std::vector<StoredOption<MonthlyAttenOptions>> &table();
};
