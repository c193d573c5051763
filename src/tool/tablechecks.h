#pragma once

#include "reports/reportkind.h"
#include "tool/finding.h"
#include "tool/requirements.h"
#include "tool/tablefacts.h"

#include <QSqlDatabase>
#include <QVariant>
#include <QVector>

#include <optional>

struct Answer;
struct Machine;
struct SchemaJudgement;

// The checks that SchemaJudge runs. They need a connection that may write, because only on such a
// connection does the server check rights to write. If the connection is lost, findings may be
// wrong or missing; SchemaJudge therefore tests the connection at the end.

/// What a report can read in a schema.
struct ReportReading {
    const ReportKind *kind = nullptr;
    ReportNeeds needs;
    QVector<UnmetRequirement> unmet = {}; ///< what it cannot read
    int rows = 0; ///< of its workbook; 0 if it cannot read the people, -1 if counting them failed
};

/// What every report of a schema needs of its tables.
struct SchemaTables {
    TableFacts facts;
    std::optional<UnmetRequirement> unqueuable; ///< why reports cannot queue mails
    std::optional<UnmetRequirement> unmarkable; ///< why they cannot store when they were generated

    /// Reads it, and the rows of these reports, whose kinds and needs must be set.
    static SchemaTables read(const QSqlDatabase &database, QVector<ReportReading> &reports);
};

/// Returns the statements with which these reports read the schema.
QStringList readingStatements(const QVector<ReportReading> &reports);

/// Lets the server prepare these statements. Sets what the reports cannot read; returns whether
/// they can read everything.
bool prepareAll(const QSqlDatabase &database, QVector<ReportReading> &reports);

/// Checks what every report of the schema needs: rights to write, sender, storage, columns.
void checkTables(const QSqlDatabase &database, const QVariant &sender, const SchemaTables &tables,
                 Findings &findings);

/// How large mails are, and may be; 0 if unknown.
struct MailSizes {
    qint64 lastBytes = 0;   ///< the largest mail of the last workbooks
    qint64 packetBytes = 0; ///< the largest packet that the server accepts
};

/// Returns the statement for checkQueue().
QString queueStatement();

/// Counts the waiting mails, and checks whether any has waited too long or is too large.
MailSizes checkQueue(const QSqlDatabase &database, const Answer &answer, SchemaJudgement &schema,
                     Findings &findings);

/// Checks whether mails will still fit into a packet at the end of the month: workbooks grow daily.
void checkPackets(const MailSizes &sizes, Findings &findings);

/// Notes if several machines have connections to the schema: more than one of them may serve it.
void checkMachines(const QSqlDatabase &database, Findings &findings);

/// Checks whether one report can read what it needs, and whether its workbook and mail will not be
/// too large. Estimates the sizes, from the number of rows, as lower bounds.
void checkReport(const QSqlDatabase &database, const ReportReading &reading, const Machine &machine,
                 const TableFacts &facts, Findings &findings);
