#pragma once

/**
 * While it lives, SIGINT, SIGTERM and SIGHUP do not end the program, so that a command can
 * clean up before it ends by itself. They are only noted; a second one ends the program at
 * once. Signals that whoever started the program let it ignore stay ignored.
 *
 * One object at a time, on the main thread.
 */
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    /// Whether one came since the object was made; false without an object.
    static bool isRequested();

    /// The exit status of a program that such a signal ended, as shells know it: 130 for SIGINT.
    static int status();
};
