#pragma once

#include "db/serversocket.h"
#include "options/connectionoptions.h"

#include <QSemaphore>

#include <memory>

class QThread;

/**
 * Ends the waiting on a connection once its server answers nobody.
 *
 * A report's statement may take long, so that its connection waits without a limit. Instead a
 * thread connects to the server every `timeoutSeconds`; when the server does not greet within as
 * many seconds, the watched connection is shut down and its statement fails.
 *
 * Made and destroyed on the thread of the connection, which must be open and stay so. The
 * destructor waits for a connection attempt under way.
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
    const ConnectionOptions options;
    mutable QSemaphore stop;
    std::unique_ptr<QThread> thread;
};
