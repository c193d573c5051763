#pragma once

#include "reports/reportkind.h"

#include <QSqlDatabase>
#include <QStringList>

/**
 * The tables and columns of a schema that a report reads and writes, with this schema's settings.
 *
 * They are asked of the server without fetching a row, over a connection that is open; a read-only
 * one will do.
 */
namespace Requirements
{

/// What of it cannot be read, "table NAME: " and the server's words; empty when all is there.
QStringList unmet(const QSqlDatabase &database, const ReportKind &kind);

/// The same for all that is read of one table.
QStringList unmet(const QSqlDatabase &database, const QString &table);

} // namespace Requirements
