#pragma once

#include "db/serversocket.h"
#include "options/connectionoptions.h"

#include <QSemaphore>

#include <thread>

/**
 * Shuts a connection down once its server no longer answers.
 *
 * A report's statement may take long, so its connection waits without a limit. Instead, a thread
 * connects to the server every `timeoutSeconds`. If the server does not answer within as many
 * seconds, the thread shuts the watched connection down, and its statement fails.
 *
 * Construct and destroy it on the thread of the connection, which must be open throughout. The
 * destructor waits for a connection attempt in progress.
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
