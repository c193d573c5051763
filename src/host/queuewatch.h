#pragma once

#include "options/connectionoptions.h"

#include <QThread>

class DBManager;
class HostState;

/**
 * Asks every served schema how many mails wait there to be sent, after each scan and every five
 * minutes, in a thread of its own: one short connection at a time.
 */
class QueueWatch
{
public:
    QueueWatch(const ConnectionOptions &options, const DBManager &manager, HostState &state);
    /// Returns when the schema being asked has answered, or after its time limit.
    ~QueueWatch();
    Q_DISABLE_COPY(QueueWatch)

    /// Asks soon. Any thread.
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
