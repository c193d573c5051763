#pragma once

/**
 * Where the log goes: standard error, one line for a message, with time and level.
 *
 * Any thread may log. Every line is one write, so that lines of several threads do not mix.
 */
namespace LogSink
{

/// From now on; for the whole process. Debug messages are dropped unless `showDebug`.
void install(bool showDebug);

} // namespace LogSink
