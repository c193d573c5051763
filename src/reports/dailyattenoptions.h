#pragma once

#include "reports/bookformat.h"

class ZasDbSettings;

/**
 * What the daily report shows, and from where. The keys have no prefix: they are shared with the
 * product's own exports.
 */
struct DailyAttenOptions {
    bool decimalTime = false; ///< hours as numbers instead of text
    bool minusSign = false;   ///< unworked time shown negative
    bool interruptions = false;
    bool advancedOvertime = false; ///< overtime from `saldo_p` instead of `diff`
    const BookFormat *format = &xlsxFormat;
    bool homeBranch = false; ///< the person's own branch instead of the latest assignment

    static DailyAttenOptions read(const ZasDbSettings &settings);
};
