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

/// What a report finds in a schema.
struct ReportReading {
    const ReportKind *kind = nullptr;
    ReportNeeds needs;
    QVector<UnmetRequirement> unmet = {}; ///< what it cannot read
    int rows = 0; ///< of its workbook; 0 if it cannot read the people, -1 if nobody can count them
};

/// Asks what these reports find, given their kinds and needs.
void readAll(const QSqlDatabase &database, QVector<ReportReading> &reports);

/// Checks what every report of the schema needs: rights to write, sender, storage, columns.
void checkTables(const QSqlDatabase &database, const QVariant &sender, const TableFacts &facts,
                 Findings &findings);

/// How large mails are; 0 if that is not known.
struct MailSizes {
    qint64 lastBytes = 0;   ///< the largest of the last workbooks' mails
    qint64 packetBytes = 0; ///< what the server takes at a time
};

/// Counts the waiting mails, and checks whether any has waited too long or is too large.
MailSizes checkQueue(const QSqlDatabase &database, SchemaJudgement &schema, Findings &findings);

/// Compares the last workbooks with what the server takes: the reports grow with the month.
void checkPackets(const MailSizes &sizes, Findings &findings);

/// Finds other machines that serve the schema.
void checkMachines(const QSqlDatabase &database, Findings &findings);

/// Looks whether one report can read what it needs, and whether its people make a workbook and a
/// mail that fit everywhere. Sizes are lower bounds by the number of rows.
void checkReport(const QSqlDatabase &database, const ReportReading &reading, const Machine &machine,
                 const TableFacts &facts, Findings &findings);
