#pragma once

#include "support/benchschema.h"

#include <QStringList>

/**
 * The daily report as a Python program makes it: what a user would write instead of this program.
 *
 * It reads the same schemas, writes the same cells and queues the same mail, but no marks.
 */
namespace PeerReport
{

/// The program's arguments for the report of a schema over `days` days, saved in `folder`.
QStringList one(const QString &schema, int days, const QString &folder);
/// The same for the schemas `prefix`1 to `prefix``count`, on all cores.
QStringList fleet(const QString &prefix, int count, int days, const QString &folder);

/// Runs the program, which prints its figures, and returns its exit status.
int run(const QStringList &arguments);

} // namespace PeerReport
