#pragma once

#include "reports/reportrun.h"

#include <QMap>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class AttenReport;
struct BookFormat;
class QObject;

/// What a run reads from a schema, and the format and size of its workbook. The operator's commands
/// use this to check in advance whether a run can succeed.
struct ReportNeeds {
    /// The statements that read the schema. The first one reads the people, without whom there is
    /// no report. If another one fails, its values are missing from the report.
    QStringList statements;
    QString countStatement; ///< counts the people
    int rowsPerPerson;      ///< rows of the workbook for each person
    const BookFormat *format;
};

/**
 * One row of the table of reports. Contains everything that callers need to handle a report without
 * knowing its class. The worker, the scan, the host's metrics and the operator's commands iterate
 * over the table. To add a report, write its class and add a row.
 */
struct ReportKind {
    const char *word;      ///< the report's name on the command line, such as "daily"
    const char *className; ///< the prefix of its log lines and of its lock's name
    const char *prefix;    ///< the prefix of its settings' keys in `vars`, including the final dot
    const ReportSchedule *schedule;
    CountsAsMade countsWhen;  ///< applies to scheduled runs and makeReport()
    const BookFormat *format; ///< the format of its workbook; null if an option chooses it

    /// Creates a report that uses `database`. If `parent` is null, the caller owns the report.
    AttenReport *(*create)(const QSqlDatabase &database, QObject *parent);

    /// Returns the keys under which `vars` holds the report's options. They have no prefix.
    QStringList (*optionKeys)();
    /// Returns what a run on `today` needs. `options` contains the stored values of optionKeys().
    ReportNeeds (*needs)(const QMap<QString, QVariant> &options, const QDate &today);

    /// Returns the key in `vars` of the setting `name`.
    QString key(const char *name) const { return QLatin1String(prefix) + QLatin1String(name); }

    /// Returns the settings stored in `values`, whose keys include the prefix.
    ReportSettings settingsOf(const QMap<QString, QVariant> &values) const;
};

extern const ReportKind dailyReport;
extern const ReportKind monthlyReport;

/// Returns all rows: the daily report, then the monthly one.
const QVector<const ReportKind *> &reportKinds();

/// Returns the words of all reports, in the order of reportKinds().
QStringList reportWords();

/// Returns the kind called `word`, or null. The comparison is case-sensitive.
const ReportKind *reportKindOf(const QString &word);
