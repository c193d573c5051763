#pragma once

#include "tool/invocation.h"
#include "tool/schemas.h"

#include <functional>

/**
 * Opens the information database, or the one database, and gives back what `work` gives, an exit
 * status. Without a way to it, says why, calls nothing and gives Tool::CouldNotAsk.
 */
int onSchemas(const Invocation &invocation, const std::function<int(Schemas &)> &work);

/**
 * Opens the schema that the command line names and does the same with it.
 *
 * The connection is closed when `work` returns; queries of its own must be gone by then.
 */
int onSchema(const Invocation &invocation, SchemaConnection::Access access,
             const std::function<int(const SchemaConnection &)> &work);
