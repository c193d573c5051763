#pragma once

#include <QStringList>

/**
 * Returns the tokens of the schemas with a running worker; in single-database mode, one empty
 * token.
 *
 * Reads the tokens from the names of the registered connections. A worker's connection is
 * registered as long as the worker serves its schema. Thread-safe.
 */
QStringList servedTokens();
