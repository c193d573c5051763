#pragma once

#include <QString>

#include <chrono>
#include <memory>

/// The directory that workbooks go to, as TMPDIR names it.
struct TemporaryDirectory {
    enum class State { Usable, Missing, NotWritable, Silent };

    QString path;
    State state = State::Silent; ///< Silent if its disk does not answer
    QString error;               ///< the system's; empty unless NotWritable
    qint64 freeBytes = 0;        ///< 0 unless known
};

/**
 * Looks at the temporary directory in a thread of its own: nothing can end a thread that waits for
 * a stalled disk, so it must not be the caller's.
 *
 * There is one such thread at a time. The destructor does not wait for it. Not thread-safe.
 */
class TemporaryDirectoryProbe
{
public:
    TemporaryDirectoryProbe();
    ~TemporaryDirectoryProbe();
    Q_DISABLE_COPY(TemporaryDirectoryProbe)

    /// Creates and removes a file in the directory. Returns Silent after `patience`, and at once
    /// while an earlier call's thread still waits.
    TemporaryDirectory look(std::chrono::milliseconds patience);

private:
    struct Look;

    std::shared_ptr<Look> pending; // shared with the thread; null if the last one has answered
};
