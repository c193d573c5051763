#pragma once

#include <QtGlobal>

/**
 * Collects the warnings that the product's code logs while it lives, for a command to print: what a
 * report complained about is part of what the command says. Nothing is printed by itself; lines
 * below warning level are dropped.
 *
 * One object at a time, on the main thread; any thread may log. The destructor restores the message
 * handler before it.
 */
class Messages
{
public:
    Messages();
    ~Messages();
    Q_DISABLE_COPY(Messages)

    /// Prints as errors what was logged since the last call: each text once, on one line. Returns
    /// whether there was any.
    static bool print();

private:
    QtMessageHandler previous;
};
