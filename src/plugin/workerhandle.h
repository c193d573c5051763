#pragma once

#include <QtGlobal>

#include <memory>
#include <mutex>

class AutoReportWorker;
class ConnectionGuard;

/**
 * A worker as seen from another thread: safe to hold when the worker has deleted itself.
 *
 * A worker whose start fails ends and is deleted in its own thread, at any moment. The handle
 * is told so before that deletion can happen, and posts to a worker only under the same lock; a
 * guarded pointer would leave a gap between the test and the call.
 */
class WorkerHandle
{
public:
    /// Made before the worker's thread starts.
    explicit WorkerHandle(AutoReportWorker *worker);
    ~WorkerHandle() = default;
    Q_DISABLE_COPY_MOVE(WorkerHandle)

    /// Queues a slot of the worker, to run in the worker's thread; nothing if it has ended. Any
    /// thread.
    void post(const char *slot);

    /// The guard of the worker's connection, which outlives the worker.
    ConnectionGuard &guard() { return *connectionGuard; }

    /// Ends the worker at once unless it has ended already. The worker's thread only.
    void stopNow();

    /// The worker has ended and may be deleted. The worker's thread only.
    void clear();

private:
    const std::shared_ptr<ConnectionGuard> connectionGuard;
    std::mutex mutex;
    AutoReportWorker *worker; ///< null once the worker has ended
};
