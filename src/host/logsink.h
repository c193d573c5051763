#pragma once

#include <functional>

class QString;

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

/// Hands every message to `listener` too, in the thread that logs it; none again with a null one.
/// Returns when no thread uses the previous listener any more.
void setListener(std::function<void(const QString &)> listener);

/// Returns how many different warning and critical messages occurred within the last hour.
int recentProblems();

} // namespace LogSink
