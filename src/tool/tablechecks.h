#pragma once

#include "tool/finding.h"

#include <QDateTime>
#include <QSqlDatabase>

#include <limits>

class AttenReport;
struct Machine;
struct ReportKind;
struct SchemaJudgement;

// Parts of the judgement by SchemaJudge. The connection must be one that may write, as the server
// checks rights only over such a one. A connection that is lost meanwhile makes findings of its
// own, or hides some: SchemaJudge asks in the end whether it still stands.

/// How large a mail may be. Unlimited as far as it is not known.
struct TableLimits {
    qint64 packetBytes = std::numeric_limits<qint64>::max(); ///< of a statement
    qint64 columnBytes = std::numeric_limits<qint64>::max(); ///< of an attachment
};

/// Looks for what every report of the schema needs: rights to write, sender, storage, columns.
void checkTables(const QSqlDatabase &database, TableLimits &limits, Findings &findings);

/// Counts the mails that wait, and looks for those that wait too long or are too large.
void checkQueue(const QSqlDatabase &database, SchemaJudgement &schema, Findings &findings);

/// Looks for other machines that serve the schema.
void checkMachines(const QSqlDatabase &database, Findings &findings);

/// Looks for what one report needs to read, and whether its people make a workbook and a mail that
/// fit everywhere. Sizes are lower bounds by the number of rows.
void checkReport(const QSqlDatabase &database, const ReportKind &kind, const QDateTime &now,
                 const Machine &machine, const TableLimits &limits, Findings &findings);
