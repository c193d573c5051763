#pragma once

#include "reports/bookformat.h"

#include <QMap>
#include <QStringList>
#include <QVariant>

class ZasDbSettings;

/**
 * What the daily report shows. The keys have no prefix, because the product's own exports use them
 * too.
 */
struct DailyAttenOptions {
    bool decimalTime = false; ///< hours as numbers instead of text
    bool minusSign = false;   ///< unworked time shown negative
    bool interruptions = false;
    bool advancedOvertime = false; ///< overtime from `saldo_p` instead of `diff`
    const BookFormat *format = &xlsxFormat;
    bool homeBranch = false; ///< the person's own branch instead of the latest assignment

    /// Returns the keys in `vars`.
    static QStringList keys();
    /// Returns the options by the values of those keys that exist.
    static DailyAttenOptions of(const QMap<QString, QVariant> &values);
    /// Reads them by one statement.
    static DailyAttenOptions read(const ZasDbSettings &settings);
};
