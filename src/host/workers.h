#pragma once

#include <QStringList>

/**
 * Returns the tokens of the schemas with a running worker; in single-database mode, one empty
 * token.
 *
 * Lists the registered connections: a worker's connection is named after the token and registered
 * as long as the worker serves its schema. Thread-safe.
 */
QStringList servedTokens();
