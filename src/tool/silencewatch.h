#pragma once

#include "db/serversocket.h"
#include "options/connectionoptions.h"

#include <QSemaphore>

#include <thread>

/**
 * Shuts down a connection once its server no longer answers.
 *
 * A report's statement may take long, so the connection waits for the answer without a limit.
 * Meanwhile, a thread attempts to open a second connection every `options.timeoutSeconds`. If the
 * server does not answer an attempt within that time, the thread shuts down the watched connection,
 * and the statement fails. If the thread cannot be started, logs a warning and does not watch.
 *
 * Construct and destroy the object on the connection's thread. The connection must be open
 * throughout. The destructor waits for a connection attempt in progress.
 */
class SilenceWatch
{
public:
    SilenceWatch(const QSqlDatabase &watched, const ConnectionOptions &options);
    ~SilenceWatch();
    Q_DISABLE_COPY(SilenceWatch)

private:
    void watch() const;

    const ServerSocket socket;
    ConnectionOptions options;
    mutable QSemaphore stop;
    /// Not a QThread, whose wait() may return before the thread has fully ended.
    std::thread thread;
};
