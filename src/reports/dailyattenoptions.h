#pragma once

#include "reports/storedoption.h"

/**
 * The options of the daily report. Their keys in `vars` have no prefix, because the product's own
 * exports use them too.
 */
struct DailyAttenOptions : StoredOptions<DailyAttenOptions> {
    bool decimalTime = false; ///< shows durations as numbers of hours instead of text
    bool minusSign = false;   ///< shows unworked time as negative
    bool interruptions = false;
    bool advancedOvertime = false; ///< reads the overtime from `saldo_p` instead of `diff`
    const BookFormat *format = &xlsxFormat;
    bool homeBranch = false; ///< shows the home branch instead of the latest assigned branch

    static const std::vector<StoredOption<DailyAttenOptions>> &table();
};
