#pragma once

#include "reports/reportkind.h"

#include <QSqlDatabase>
#include <QStringList>

/**
 * What a report needs of a schema's tables, given the schema's settings.
 *
 * The server prepares the reports' own statements without executing them, and thus names what is
 * missing, ambiguous, damaged or forbidden. Errors begin with the tables of the statement.
 */
namespace Requirements
{

/// Returns why the report could not read the schema; empty if it can. The connection may be
/// read-only.
QStringList unreadable(const QSqlDatabase &database, const ReportKind &kind);

/// Returns why reports could not queue mails and store settings; empty if they can. The connection
/// must not be read-only.
QStringList unwritable(const QSqlDatabase &database);

} // namespace Requirements
