#pragma once

#include "tool/invocation.h"
#include "tool/schemas.h"

#include <functional>

/**
 * Opens the information database, or with "--single" the one database, and calls `work`. Returns
 * the exit status that `work` returns. If the database cannot be opened, prints why and returns
 * Tool::CouldNotAsk.
 */
int onSchemas(const Invocation &invocation, const std::function<int(const Schemas &)> &work);

/// Prints that there is no such active schema, and which one was perhaps meant. Returns
/// Tool::CouldNotAsk.
int noSuchSchema(const Schemas &schemas, const QString &token);

/**
 * The same as onSchemas() for the schema that the command line names.
 *
 * The connection is closed when `work` returns; its queries must be gone by then.
 */
int onSchema(const Invocation &invocation, SchemaConnection::Access access,
             SchemaConnection::Statements statements,
             const std::function<int(const SchemaConnection &)> &work);
