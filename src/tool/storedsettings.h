#pragma once

#include "common/result.h"
#include "reports/reportkind.h"
#include "reports/reportschedule.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// A report's settings: the texts in the table `vars`, and the values that the schedule reads.
struct StoredSettings {
    QMap<QString, QVariant> values; ///< by key, without the prefix
    ReportSettings settings;

    static Result<StoredSettings> read(const QSqlDatabase &database, const ReportKind &kind);
    /// Reads those of all reports at once, in the order of reportKinds().
    static Result<QVector<StoredSettings>> readAll(const QSqlDatabase &database);

    /// Returns the text of that setting, or an empty one if it is not set.
    QString text(const char *key) const { return values.value(QLatin1String(key)).toString(); }
    /// Returns whether a host's scan finds the schema by it: the text must be exactly 1.
    bool isFoundByScan() const { return text("enabled").toInt() == 1; }
};

/// The recipients that are mailed to, in the order of the setting.
struct Recipients {
    explicit Recipients(const QStringList &written);

    QStringList wellFormed;
    QStringList malformed;
};
