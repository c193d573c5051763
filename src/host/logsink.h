#pragma once

#include <QtGlobal>

#include <functional>

class QString;

/**
 * Writes the log to standard error, one line per message. A line begins with time and level or, for
 * the journal, with the priority. The message of a schema's worker begins with the schema's token.
 *
 * Any thread may log. Each line is a single write, so that lines of several threads never mix.
 */
namespace LogSink
{

/**
 * Installs the process's message handler. If `showEverything` is false, the handler drops debug
 * messages and the info lines that recur at every tick, and shows a repeated warning or critical
 * message only once an hour, with its count. It counts the messages of each schema separately.
 */
void install(bool showEverything);

/// Sets the function that is called with every message, in the thread that logs the message. The
/// function must not log. The previous listener is no longer called after setListener() has
/// returned. A null `listener` only removes the previous one.
void setListener(std::function<void(QtMsgType, const QString &)> listener);

/// Returns how many different warning and critical messages occurred within about the last hour.
/// The same message of two schemas counts twice.
int recentProblems();

} // namespace LogSink
