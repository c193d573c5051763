#pragma once

#include <QMap>
#include <QStringList>
#include <QVariant>

class ZasDbSettings;

/**
 * What the monthly report shows. The keys have no prefix, because the product's own exports use
 * them too.
 */
struct MonthlyAttenOptions {
    int advancedOvertime = 0;   ///< exactly 1: overtime from `saldo_p` instead of `totalSaldo`
    bool payrollNumber = false; ///< shown instead of the personal number
    QStringList extraShortcuts; ///< a column for each of these interruptions; not trimmed

    /// Returns the keys in `vars`.
    static QStringList keys();
    /// Returns the options by the values of those keys that exist.
    static MonthlyAttenOptions of(const QMap<QString, QVariant> &values);
    /// Reads them by one statement.
    static MonthlyAttenOptions read(const ZasDbSettings &settings);
};
