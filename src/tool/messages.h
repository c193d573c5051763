#pragma once

#include <QtGlobal>

/**
 * Collects the warnings and errors that are logged while the object exists, and drops all other log
 * messages. A command prints the collected ones with print(), because a report's warnings are part
 * of the command's output.
 *
 * Only one object may exist at a time, on the main thread; any thread may log. The destructor
 * restores the previous message handler and discards what was not printed.
 */
class Messages
{
public:
    Messages();
    ~Messages();
    Q_DISABLE_COPY(Messages)

    /// Prints to standard error what was collected since the last call, each text once and on one
    /// line. Returns whether it printed anything.
    static bool print();

private:
    QtMessageHandler previous;
};
