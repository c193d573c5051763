#pragma once

#include "tool/finding.h"
#include "tool/preparedstatements.h"
#include "tool/schemas.h"
#include "tool/storedsettings.h"

#include <QDateTime>

#include <memory>

class HistoryWindow;
struct Answer;
struct Machine;
struct MailSizes;

/// The judgement of one report of a schema.
struct ReportJudgement {
    const ReportKind *kind = nullptr;
    StoredSettings stored;
    QDateTime next;            ///< when the report is due next; invalid if never
    QVector<Finding> findings; ///< in descending order of gravity
};

/// Returns one word for a report: the state of its first problem; without problems, the state of
/// its first finding that is not a notice; otherwise "well".
QString stateOf(const QVector<Finding> &findings);

/// The judgement of a schema.
struct SchemaJudgement {
    QString token;
    QString databaseName;
    bool isTried = false; ///< whether a connection was attempted
    bool isOpened = false;
    bool isComplete = true;    ///< false: the server stopped answering
    int queued = -1;           ///< mails waiting for the sender; -1 if they cannot be counted
    qint64 oldestSeconds = 0;  ///< age of the oldest waiting mail, by the server's clock
    QVector<Finding> findings; ///< why the reports could not be judged; empty if they could
    QVector<ReportJudgement> reports; ///< daily first; empty if they could not be judged

    bool hasProblem() const;
    bool isEnabled() const; ///< whether the schema has an enabled report
};

/**
 * Judges schemas: what keeps their reports from going out, what harms them, and what to do.
 *
 * All checks of schemas are made here. The commands `status`, `check`, `why` and `history` only
 * show the findings.
 *
 * Findings of equal gravity are in this order: the row in the table `schemas`, the connection, the
 * settings, the tables and rights, the people, this machine, the hosts, the mails. Judging changes
 * nothing in the database. Thread-safe.
 */
class SchemaJudge
{
public:
    /// What to look for. Each value includes the previous ones.
    enum class Scope {
        Problems,  ///< problems of enabled reports, and which reports are disabled
        Notices,   ///< tables in a cluster, machines that may serve the schema, damaged tables
        AllReports ///< problems of disabled reports, as if they were enabled
    };

    /// Construct the object on the main thread, because the constructor switches languages
    /// temporarily. `hosts` must outlive the object. All schemas are judged as of `moment`.
    SchemaJudge(const Machine &hosts, const QDateTime &moment, Scope judged);
    ~SchemaJudge();
    Q_DISABLE_COPY(SchemaJudge)

    SchemaJudgement judge(const SchemaRow &row) const;

private:
    struct TablesJudged;

    bool isJudged(const StoredSettings &stored) const;
    void judgeOpened(const QSqlDatabase &database, const SchemaRow &row, SchemaJudgement &schema,
                     Findings &findings) const;
    void judgeReports(const QSqlDatabase &database, const SchemaSettings &settings,
                      const Answer &queue, const SchemaRow &row, SchemaJudgement &schema) const;
    void judgeTables(const QSqlDatabase &database, const SchemaSettings &settings,
                     const MailSizes &sizes, TablesJudged &tables) const;
    void judgeReading(const QSqlDatabase &database, const SchemaSettings &settings,
                      TablesJudged &tables) const;
    bool didAllGoOut(const SchemaSettings &settings, const QString &token) const;
    void judgeReport(const QSqlDatabase &database, const ReportKind &kind,
                     const StoredSettings &stored, const TablesJudged &tables,
                     Findings &findings) const;

    const Machine &machine;
    const QDateTime now;
    const Scope scope;
    const std::unique_ptr<const HistoryWindow> window; ///< its last day is that of `now`
    mutable PreparedStatements prepared;               ///< for the schemas judged so far
};
