#pragma once

#include "common/result.h"
#include "reports/reportkind.h"
#include "reports/reportschedule.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// A report's settings: the texts in the table `vars`, and the values that the schedule uses.
struct StoredSettings {
    QMap<QString, QVariant> values; ///< by key, without the prefix
    ReportSettings settings;

    static Result<StoredSettings> read(const QSqlDatabase &database, const ReportKind &kind);

    /// Returns the text of a setting, or an empty text if it is not set.
    QString text(const char *key) const { return values.value(QLatin1String(key)).toString(); }
    /// Returns whether a host's scan finds the schema by this report: "enabled" must be exactly 1.
    bool isFoundByScan() const { return text("enabled").toInt() == 1; }
};

/// The settings of all reports in a schema's table `vars`.
struct SchemaSettings {
    QVector<StoredSettings> reports; ///< in the order of reportKinds()
    QMap<QString, QVariant> options; ///< every value that statement() reads, by full key
    QVariant sender;                 ///< of the reports' mails; invalid if it is not stored

    /// Returns the statement that reads the settings.
    static QString statement();
    /// Returns the settings in the rows that statement() selects.
    static SchemaSettings of(const QVector<QVector<QVariant>> &rows);
};

/// The recipients of a report, in the order of the setting.
struct Recipients {
    explicit Recipients(const QStringList &written);

    QStringList wellFormed;
    QStringList malformed;
};
