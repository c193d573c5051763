#pragma once

/**
 * While the object exists, the first SIGINT, SIGTERM or SIGHUP is only recorded, so that the
 * command can clean up and end. A second signal ends the program at once. Signals that were ignored
 * when the program started stay ignored.
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

    /// Returns the exit status for the recorded signal, as shells report it: 130 for SIGINT.
    static int status();
};
