#pragma once

#include "tool/invocation.h"
#include "tool/schemas.h"

#include <functional>

/**
 * Opens the schema that the command line names and gives back what `work` gives; without a way to
 * it, says why.
 */
int onSchema(const Invocation &invocation, SchemaConnection::Access access,
             const std::function<int(const SchemaConnection &)> &work);
