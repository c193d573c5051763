#pragma once

#include "reports/reportrun.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVector>

class AttenReport;
struct BookFormat;
class QObject;

/**
 * One row of the table of the reports: all in which a report differs for those who only handle it.
 * The worker, the scan, the lock and the operator's commands go through the table; a further report
 * is a class of its own and a row here.
 */
struct ReportKind {
    const char *word;      ///< what operators call it: "daily"
    const char *className; ///< what its log lines and its lock begin with
    const char *prefix;    ///< of the keys of its settings, with the full stop
    const ReportSchedule *schedule;
    CountsAsMade countsWhen;  ///< for its scheduled runs
    const BookFormat *format; ///< the only one that its mails have; null where a setting chooses

    /// Returns a report over `database` whose owner is `parent`, or else the caller.
    AttenReport *(*create)(const QSqlDatabase &database, QObject *parent);

    /// Returns the name of one of its settings in the table `vars`.
    QString key(const char *name) const { return QLatin1String(prefix) + QLatin1String(name); }

    /// Reads its settings out of the values of all keys that begin with the prefix.
    ReportSettings settingsOf(const QMap<QString, QVariant> &values) const;
};

extern const ReportKind dailyReport;
extern const ReportKind monthlyReport;

/// Returns all of them, the most frequent one first.
const QVector<const ReportKind *> &reportKinds();

/// Returns their words, in the same order.
QStringList reportWords();

/// Returns the kind of that word, null for any other text, in capitals too.
const ReportKind *reportKindOf(const QString &word);
