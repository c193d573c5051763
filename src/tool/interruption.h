#pragma once

/**
 * During its lifetime, the first SIGINT, SIGTERM or SIGHUP is only noted, so that a command can
 * clean up and end on its own; a second one ends the program at once. Signals that the program was
 * started to ignore stay ignored.
 *
 * Only one object may exist at a time, on the main thread.
 */
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    /// Returns whether a signal came since the object was constructed; false without an object.
    static bool isRequested();

    /// Returns the exit status for that signal, as shells report it: 130 for SIGINT.
    static int status();
};
