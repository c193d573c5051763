#pragma once

#include <QStringList>

/**
 * Returns the tokens of the schemas with a running worker, an empty one for a host of one schema.
 *
 * A worker's connection is registered for as long as it serves its schema, under a name with the
 * token. Thread-safe.
 */
QStringList servedTokens();
