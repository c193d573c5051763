#pragma once

#include <QDeadlineTimer>
#include <QMap>
#include <QPointer>
#include <QString>
#include <QThread>

#include <memory>

class AutoReportWorker;
class WorkerHandle;

/**
 * The plug-in's workers, by token, and their threads.
 *
 * Only stopAll() removes entries. The entry of a worker that ended on its own remains, so that the
 * next scan does not start a new worker for the same schema. Use it only in the plug-in's thread.
 */
class WorkerRegistry
{
public:
    /// The threads become children of `parent`.
    explicit WorkerRegistry(QObject *parent);
    ~WorkerRegistry();
    Q_DISABLE_COPY_MOVE(WorkerRegistry)

    bool contains(const QString &token) const { return entries.contains(token); }
    int size() const { return entries.size(); }
    /// Returns how many running workers have no open connection, usually because they are starting.
    int starting() const;

    /// Takes ownership of the worker and starts it in a new thread. If the system cannot start the
    /// thread, deletes the worker and returns false; Qt has then logged the reason.
    bool add(const QString &token, std::unique_ptr<AutoReportWorker> owned);

    /// Queues a call of `slot` for every worker that has not ended.
    void post(const char *slot);

    /**
     * Ends all workers and removes their entries. Asks all workers to stop, waits, and then breaks
     * off the connections of the workers that have not ended. Takes at most ten seconds.
     *
     * A thread that does not end in time, for example because a disk is stalled, is logged and left
     * to end on its own. It is not terminated: the C functions that it runs would not release their
     * locks and memory, and the process would abort if the thread were in a destructor.
     */
    void stopAll();

private:
    struct Entry {
        std::shared_ptr<WorkerHandle> handle;
        QPointer<QThread> thread; ///< deletes itself when it has ended
    };
    void askAll();
    void forgetEnded(QDeadlineTimer deadline);
    void leaveBehind();

    QObject *parent;
    QMap<QString, Entry> entries;
};
