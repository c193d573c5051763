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
 * Installs the process's message handler. Unless `showEverything`, drops debug messages and the
 * info lines that come with every tick. While a schema repeats a warning or critical message, shows
 * it only once an hour, with its count.
 */
void install(bool showEverything);

/// Calls `listener` with every message, in the thread that logs it. Replaces the previous listener,
/// which no thread uses any more when this returns. Null removes it.
void setListener(std::function<void(QtMsgType, const QString &)> listener);

/// Returns how many different warning and critical messages occurred within the last hour. The same
/// message of two schemas counts twice.
int recentProblems();

} // namespace LogSink
