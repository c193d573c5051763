#pragma once

#include "support/benchschema.h"

#include <QStringList>

/**
 * A Python program that makes the daily report. Users could write such a program
 * instead of using this product.
 *
 * The program reads the same schemas, writes the same cells and queues the same mail, but does not
 * store "lastGenerated".
 */
namespace PeerReport
{

/// Returns the program's arguments for making the report of the first `days` days of a schema and
/// saving it in `folder`.
QStringList one(const QString &schema, int days, const QString &folder);
/// Returns the arguments for `count` schemas, whose names are `prefix` and a number from 1 on. The
/// program uses all cores.
QStringList fleet(const QString &prefix, int count, int days, const QString &folder);

/// Runs the program, which prints its figures, and returns its exit status.
int run(const QStringList &arguments);

} // namespace PeerReport
