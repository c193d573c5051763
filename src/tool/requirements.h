#pragma once

#include "tool/reportkind.h"

#include <QSqlDatabase>
#include <QStringList>

/// The tables and columns of a schema that a report reads and writes.
namespace Requirements
{

/// What of it cannot be read, in the server's words, one text per table; empty when all is there.
QStringList unmet(const QSqlDatabase &database, ReportKind kind);

/// The same for one table that both need.
QStringList unmet(const QSqlDatabase &database, const QString &table);

} // namespace Requirements
