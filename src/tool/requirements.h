#pragma once

#include "reports/reportkind.h"

#include <QSqlDatabase>
#include <QStringList>

/**
 * What a report needs of a schema's tables, with this schema's settings.
 *
 * The server prepares the reports' own statements and executes none: it names what is missing,
 * ambiguous, damaged or forbidden. Errors begin with the tables of the statement.
 */
namespace Requirements
{

/// Returns why the report could not read; empty when it can. The connection may be read-only.
QStringList unreadable(const QSqlDatabase &database, const ReportKind &kind);

/// Returns why reports could not queue mails and store settings; empty when they can. The server
/// tells that over a connection that may write.
QStringList unwritable(const QSqlDatabase &database);

} // namespace Requirements
