#pragma once

#include "options/connectionoptions.h"

#include <QThread>

class DBManager;
class HostState;

/**
 * Counts the mails that are waiting to be sent in every served schema, after each scan and every
 * five minutes. Works in a thread of its own, with one short-lived connection at a time.
 */
class QueueWatch
{
public:
    QueueWatch(const ConnectionOptions &options, const DBManager &manager, HostState &state);
    /// Waits until the database that is being asked has answered or its time limit is over.
    ~QueueWatch();
    Q_DISABLE_COPY(QueueWatch)

    /// Makes the thread count, and returns at once. Thread-safe.
    void ask();
    void requestStop() { thread.requestInterruption(); }

private:
    void askAll();
    void askSchema(const QString &token);

    const ConnectionOptions options;
    const DBManager &manager;
    HostState &state;
    QThread thread;
    QObject context; // lives in the thread
};
