#pragma once

#include "reports/reportkind.h"
#include "tool/finding.h"
#include "tool/requirements.h"

#include <QSqlDatabase>
#include <QVariant>
#include <QVector>

struct Machine;
struct SchemaJudgement;
struct TableFacts;

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

/// Sets what the reports cannot read, and their rows. Their kinds and needs must be set.
void readAll(const QSqlDatabase &database, QVector<ReportReading> &reports);

/// Checks what every report of the schema needs: rights to write, sender, storage, columns.
void checkTables(const QSqlDatabase &database, const QVariant &sender, const TableFacts &facts,
                 Findings &findings);

/// How large mails are, and may be; 0 if unknown.
struct MailSizes {
    qint64 lastBytes = 0;   ///< the largest mail of the last workbooks
    qint64 packetBytes = 0; ///< the largest packet that the server accepts
};

/// Counts the waiting mails, and checks whether any has waited too long or is too large.
MailSizes checkQueue(const QSqlDatabase &database, SchemaJudgement &schema, Findings &findings);

/// Checks whether mails will still fit into a packet at the end of the month: workbooks grow daily.
void checkPackets(const MailSizes &sizes, Findings &findings);

/// Finds other machines that serve the schema.
void checkMachines(const QSqlDatabase &database, Findings &findings);

/// Checks whether one report can read what it needs, and whether its workbook and mail will not be
/// too large. Estimates the sizes, from the number of rows, as lower bounds.
void checkReport(const QSqlDatabase &database, const ReportReading &reading, const Machine &machine,
                 const TableFacts &facts, Findings &findings);
