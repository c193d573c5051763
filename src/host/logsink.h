#pragma once

#include <QtGlobal>

#include <functional>

class QString;

/**
 * Writes the log to standard error, one line per message: with time and level or, for the journal,
 * with its priority. Messages of a schema's worker begin with the schema's token.
 *
 * Any thread may log. Each line is a single write, so that lines of several threads never mix.
 */
namespace LogSink
{

/**
 * Installs the process's message handler. Unless `showEverything`, debug messages are dropped, and
 * so are the info lines of ticks that do nothing; a warning or critical message that a schema
 * repeats is shown once an hour with its count.
 */
void install(bool showEverything);

/// Calls `listener` with every message, in the thread that logs it. A null listener ends that.
/// Returns when no thread uses the previous listener any more.
void setListener(std::function<void(QtMsgType, const QString &)> listener);

/// Returns how many different warning and critical messages occurred within the last hour, counting
/// those of different schemas separately.
int recentProblems();

} // namespace LogSink
