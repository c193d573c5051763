#pragma once

#include "tool/finding.h"

#include <QDateTime>
#include <QSqlDatabase>

#include <limits>

class AttenReport;
struct Machine;
struct ReportKind;
struct SchemaJudgement;

// The checks that SchemaJudge runs. They need a connection that may write, because the server
// checks rights only on such a one. If the connection is lost, findings may be wrong or missing;
// SchemaJudge therefore tests the connection at the end.

/// How large a mail may be. A limit that is not known does not apply.
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
