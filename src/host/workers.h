#pragma once

#include <QStringList>

/**
 * Returns the tokens of the schemas that have a running worker. In single-database mode, returns
 * one empty token if the worker is running.
 *
 * Reads the tokens from the names of the registered connections. A worker's connection is
 * registered as long as the worker serves its schema. Thread-safe.
 */
QStringList servedTokens();
