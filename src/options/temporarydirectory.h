#pragma once

#include <QString>

#include <chrono>
#include <memory>

/// The directory for workbooks: TMPDIR, or /tmp if that is not set.
struct TemporaryDirectory {
    enum class State {
        Usable,
        Missing,
        NotWritable,
        Silent,   ///< the disk does not answer
        Unchecked ///< no thread could be started for the check
    };

    QString path;
    State state = State::Silent;
    QString error;        ///< the system's error; empty unless NotWritable or Unchecked
    qint64 freeBytes = 0; ///< 0 if unknown
};

/**
 * Checks the temporary directory in a thread of its own, because nothing can end a thread that
 * waits for a stalled disk.
 *
 * A probe has at most one such thread at a time. The destructor does not wait for the thread. Not
 * thread-safe.
 */
class TemporaryDirectoryProbe
{
public:
    TemporaryDirectoryProbe();
    ~TemporaryDirectoryProbe();
    Q_DISABLE_COPY(TemporaryDirectoryProbe)

    /// Checks the directory by creating and removing a file. Returns Silent if that takes longer
    /// than `patience`. Returns Silent at once if the thread of an earlier call is still waiting.
    TemporaryDirectory check(std::chrono::milliseconds patience);

private:
    struct Check;

    std::shared_ptr<Check> pending; // shared with a thread that exceeded `patience`; else null
};
