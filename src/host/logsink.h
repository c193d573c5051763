#pragma once

/**
 * Where the log goes: standard error, one line for a message, with time and level.
 *
 * Any thread may log. Every line is one write, so that lines of several threads do not mix.
 */
namespace LogSink
{

/**
 * From now on; for the whole process. Unless everything is to be shown, debug messages are dropped
 * and a warning or critical line that comes again in the same words is shown once an hour, with
 * its count.
 */
void install(bool showEverything);

} // namespace LogSink
