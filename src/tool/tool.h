#pragma once

#include <QStringList>

/// The operator's commands: everything but `serve`.
namespace Tool
{

/// The exit status of every command, except for one that a signal interrupted, which has
/// Interruption::status().
enum Status {
    Well = 0,       ///< the command succeeded, and all is well
    Look = 1,       ///< something needs attention, or the command failed
    CouldNotAsk = 2 ///< the command line is wrong, or the database cannot be asked
};

/// Returns the command in `arguments`, whose first element is the program's name; empty if there is
/// none or it is not an operator's command.
QString commandIn(const QStringList &arguments);

/**
 * Runs the command `name`, which commandIn() returned. Returns the exit status.
 *
 * Prints results to standard output and everything else to standard error. Call it once, on the
 * main thread, with a QCoreApplication. While it runs, it collects what Qt logs.
 */
int run(const QString &name, const QStringList &arguments);

/// Returns the names of all commands.
QStringList commandNames();

/// Returns all commands, one per line, for the program's help.
QString commandHelp();

} // namespace Tool
