#pragma once

#include <QtGlobal>

#include <memory>
#include <mutex>

class AutoReportWorker;
class ConnectionGuard;

/**
 * Lets other threads refer to a worker that may delete itself at any moment.
 *
 * A worker that has ended is deleted in its own thread. Before that, its signal `finished` calls
 * clear(), which locks the same mutex as post(), so that post() never calls a deleted worker.
 * QPointer does not suffice: the worker could be deleted between the test and the call.
 */
class WorkerHandle
{
public:
    /// Construct it before the worker's thread starts.
    explicit WorkerHandle(AutoReportWorker *worker);
    ~WorkerHandle() = default;
    Q_DISABLE_COPY_MOVE(WorkerHandle)

    /// Queues a call of `slot` in the worker's thread, unless the worker has ended. Thread-safe.
    void post(const char *slot);

    /// Returns the guard of the worker's connection. The guard outlives the worker. Thread-safe.
    ConnectionGuard &guard() { return *connectionGuard; }

    /// Stops the worker unless it has ended already. Call it in the worker's thread.
    void stopNow();

    /// Forgets the worker, which has ended and is about to be deleted. Call it in the worker's
    /// thread.
    void clear();

private:
    const std::shared_ptr<ConnectionGuard> connectionGuard;
    std::mutex mutex;
    AutoReportWorker *worker; ///< null once the worker has ended
};
