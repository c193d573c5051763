#pragma once

/**
 * Writes the log to standard error, one line per message, with time and level.
 *
 * Any thread may log. Each line is a single write, so that lines of several threads never mix.
 */
namespace LogSink
{

/**
 * Installs the process's message handler. Unless `showEverything`, debug messages are dropped and
 * a repeated warning or critical message is shown once an hour with its count.
 */
void install(bool showEverything);

/// Returns how many different warning and critical messages occurred within the last hour.
int recentProblems();

} // namespace LogSink
