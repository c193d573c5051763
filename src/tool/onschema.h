#pragma once

#include "tool/invocation.h"
#include "tool/schemas.h"

#include <functional>

/**
 * Opens the information database or, with "--single", the only schema, and calls `work`. Returns
 * the exit status of `work`. If the database cannot be opened, prints why and returns
 * Tool::CouldNotAsk.
 */
int onSchemas(const Invocation &invocation, const std::function<int(const Schemas &)> &work);

/// Prints that no active schema has this token, and suggests a similar token if there is one.
/// Returns Tool::CouldNotAsk.
int noSuchSchema(const Schemas &schemas, const QString &token);

/**
 * Like onSchemas(), but calls `work` with a connection to the schema that the command line names.
 *
 * The connection is closed when `work` returns. By then, `work` must have destroyed its queries.
 */
int onSchema(const Invocation &invocation, SchemaConnection::Access access,
             SchemaConnection::Statements statements,
             const std::function<int(const SchemaConnection &)> &work);
