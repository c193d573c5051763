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

// SchemaJudge's checks of a schema's tables. They need a connection that is not read-only: on a
// read-only one, the server does not check rights to write. If the connection is lost, findings may
// be wrong or missing. SchemaJudge therefore tests the connection at the end.

/// What a report can read in a schema.
struct ReportReading {
    const ReportKind *kind = nullptr;
    ReportNeeds needs;
    QVector<UnmetRequirement> unmet = {}; ///< what it cannot read
    int rows = 0; ///< of its workbook; -1 if the people could not be counted
};

/// What every report of a schema needs from the tables.
struct SchemaTables {
    TableFacts facts;
    std::optional<UnmetRequirement> unqueuable; ///< why reports cannot queue mails
    std::optional<UnmetRequirement> unmarkable; ///< why they cannot store "lastGenerated"

    /// Queries the server for these members, and sets `rows` of all `reports`, whose `needs` must
    /// be set.
    static SchemaTables read(const QSqlDatabase &database, QVector<ReportReading> &reports);
};

/// Returns the statements with which these reports read the schema.
QStringList readingStatements(const QVector<ReportReading> &reports);

/// Lets the server prepare the statements of readingStatements(). Returns whether the reports can
/// read everything. If not, sets their `unmet`.
bool prepareAll(const QSqlDatabase &database, QVector<ReportReading> &reports);

/// Checks what every report of the schema needs: rights to write, sender, storage, columns.
void checkTables(const QSqlDatabase &database, const QVariant &sender, const SchemaTables &tables,
                 Findings &findings);

/// The size of recent mails, and the limit for mails; 0 if unknown.
struct MailSizes {
    qint64 lastBytes = 0;   ///< the largest attachment of the last mails
    qint64 packetBytes = 0; ///< the largest packet that the server accepts
};

/// Returns the statement whose answer checkQueue() takes.
QString queueStatement();

/// Stores in `schema` the number of waiting mails and the age of the oldest, and checks whether any
/// has waited too long or is too large. `answer` is the answer to queueStatement().
MailSizes checkQueue(const QSqlDatabase &database, const Answer &answer, SchemaJudgement &schema,
                     Findings &findings);

/// Checks whether mails will still fit into a packet at the end of the month, because workbooks
/// grow daily.
void checkPackets(const MailSizes &sizes, Findings &findings);

/// Adds a notice if several machines have connections to the schema, because more than one of them
/// may serve it.
void checkMachines(const QSqlDatabase &database, Findings &findings);

/// Checks whether a report can read what it needs, and whether its workbook or its mail is too
/// large. Computes lower bounds of the sizes from the number of rows.
void checkReport(const QSqlDatabase &database, const ReportReading &reading, const Machine &machine,
                 const TableFacts &facts, Findings &findings);
