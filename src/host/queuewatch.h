#pragma once

#include "options/connectionoptions.h"

#include <QThread>

class DBManager;
class HostState;

/**
 * Every five minutes and after each ask(), counts the waiting mails of each served schema. Works in
 * a thread of its own, with one short-lived connection at a time.
 */
class QueueWatch
{
public:
    QueueWatch(const ConnectionOptions &options, const DBManager &manager, HostState &state);
    /// Waits until the current query, or the current attempt to connect, has ended or timed out.
    ~QueueWatch();
    Q_DISABLE_COPY(QueueWatch)

    /// Requests a count and returns at once. Thread-safe.
    void ask();
    /// Ends the counting after the current schema. Thread-safe.
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
