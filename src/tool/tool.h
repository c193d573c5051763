#pragma once

#include <QStringList>

/// The operator's commands: all commands of the program except `serve`.
namespace Tool
{

/// The exit status of a command. A command that a signal has interrupted returns
/// Interruption::status() instead.
enum Status {
    Well = 0,       ///< the command succeeded, and all is well
    Look = 1,       ///< something needs attention, or the command failed
    CouldNotAsk = 2 ///< wrong command line or configuration, or the database cannot be read
};

/// Returns the name of the operator's command in `arguments`, or an empty text if there is none.
/// The first argument is the program's name.
QString commandIn(const QStringList &arguments);

/**
 * Runs the command `name`, as returned by commandIn(). Returns the exit status.
 *
 * Prints results to standard output and everything else to standard error. Call it once, on the
 * main thread, with a QCoreApplication. While the command runs, a Messages object handles what is
 * logged.
 */
int run(const QString &name, const QStringList &arguments);

/// Returns the names of all commands.
QStringList commandNames();

/// Returns all commands, one per line, for the program's help.
QString commandHelp();

} // namespace Tool
