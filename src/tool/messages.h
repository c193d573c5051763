#pragma once

#include <QStringList>

/**
 * Collects the warnings that the product's code logs while it lives: they are the reasons that a
 * command gives. Nothing is printed; lines below a warning are dropped.
 *
 * One object at a time, for a program with one thread; the handler before it is back afterwards.
 */
class Messages
{
public:
    Messages();
    ~Messages();
    Q_DISABLE_COPY(Messages)

    /// What was logged since the last call: each text once, on one line.
    static QStringList take();
    /// Prints the same as errors; whether there was anything.
    static bool print();

private:
    QtMessageHandler previous;
};
