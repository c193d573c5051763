#pragma once

#include <QtGlobal>

/**
 * Collects the warnings that are logged during its lifetime, for a command to print: a report's
 * warnings are part of the command's output. Prints nothing on its own. Lines below warning level
 * are dropped.
 *
 * Only one object may exist at a time, on the main thread; any thread may log. The destructor
 * restores the previous message handler.
 */
class Messages
{
public:
    Messages();
    ~Messages();
    Q_DISABLE_COPY(Messages)

    /// Prints the warnings since the last call as errors, each text once and on one line. Returns
    /// whether there were any.
    static bool print();

private:
    QtMessageHandler previous;
};
