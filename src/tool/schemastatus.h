#pragma once

#include "reports/reportkind.h"
#include "reports/reportschedule.h"
#include "tool/schemas.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

/// A report's settings: the texts in the table `vars`, and the values that the schedule reads.
struct StoredSettings {
    QMap<QString, QVariant> values; ///< by key, without the prefix
    ReportSettings settings;

    static Result<StoredSettings> read(const QSqlDatabase &database, const ReportKind &kind);

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

/**
 * The status of one report of one schema at a given moment. Moments are in local time, as in the
 * schedule.
 */
struct ReportStatus {
    QString token;
    QString databaseName;
    const ReportKind *kind = nullptr; ///< null: the schema could not be read at all
    StoredSettings stored;
    QDateTime next;           ///< when it is due next; invalid if never
    int queued = 0;           ///< mails waiting for the sender, of the whole schema
    qint64 oldestSeconds = 0; ///< age of the oldest of them, by the server's clock
    QString reason;           ///< one word; empty if all is well
    QString detail;           ///< a sentence, and what to do
};

/// Returns the status of both reports, daily first, or one record that says why the schema could
/// not be read. Writes nothing; the connection is closed at the end.
QVector<ReportStatus> readStatus(const Schemas &schemas, const QString &token,
                                 const QDateTime &now);
