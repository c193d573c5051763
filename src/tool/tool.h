#pragma once

#include <QStringList>

/// The operator's commands: everything but `serve`.
namespace Tool
{

/// The exit status of every command; one that a signal interrupted has Interruption::status().
enum Status {
    Well = 0,       ///< done, and all is well
    Look = 1,       ///< done, and something needs attention, or it failed
    CouldNotAsk = 2 ///< a wrong command line, or no way to the database
};

/// The command that `arguments` (the program's name first) begin with; empty for none of ours.
QString commandIn(const QStringList &arguments);

/**
 * Runs that command, one that commandIn() gave, and gives the exit status.
 *
 * Answers go to standard output, all else to standard error. To be called once, on the main
 * thread, with a QCoreApplication; Qt's log is the command's while it runs.
 */
int run(const QString &command, const QStringList &arguments);

/// All commands, one a line, as the program's help shows them.
QString commandHelp();

} // namespace Tool
