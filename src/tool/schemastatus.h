#pragma once

#include "reports/reportkind.h"
#include "reports/reportschedule.h"
#include "tool/schemas.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

/// A report's settings as they stand in the table `vars`, and as the schedule reads them.
struct StoredSettings {
    QMap<QString, QVariant> values; ///< by key, without the prefix
    ReportSettings settings;

    static Result<StoredSettings> read(const QSqlDatabase &database, const ReportKind &kind);

    /// As it was written, empty where it was not.
    QString text(const char *key) const { return values.value(QLatin1String(key)).toString(); }
    /// Whether the scan of a host takes the schema up: it asks for exactly 1.
    bool isFoundByScan() const { return text("enabled").toInt() == 1; }
};

/// Recipients as they are mailed to: trimmed, blank ones left out, in the order of the setting.
struct Recipients {
    explicit Recipients(const QStringList &written);

    QStringList wellFormed;
    QStringList malformed;
};

/**
 * How one report of one schema is doing, at the moment for which it was asked. Moments are in local
 * time, which is what the schedule goes by.
 */
struct ReportStatus {
    QString token;
    QString databaseName;
    const ReportKind *kind = nullptr; ///< null: the schema as a whole could not be asked
    StoredSettings stored;
    QDateTime next;           ///< next due; invalid when it never will be
    int queued = 0;           ///< mails of the whole schema that wait for the sender
    qint64 oldestSeconds = 0; ///< age of the oldest of them, by the server's clock
    QString reason;           ///< one word; empty while all is well
    QString detail;           ///< a sentence, and what to do
};

/// Returns both reports of a schema, daily first, or one record that says why it could not be
/// asked. Nothing is written; the connection is closed at the end.
QVector<ReportStatus> readStatus(const Schemas &schemas, const QString &token,
                                 const QDateTime &now);
