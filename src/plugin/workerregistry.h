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
 * The workers of the plug-in by token, each in a thread of its own, and how they are ended.
 *
 * An entry stays until stopAll(), also when its worker has ended: a schema whose worker ended is
 * not served again before that. Belongs to the plug-in's thread.
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
    /// How many workers have not opened their connections yet.
    int starting() const;

    /// Starts the worker in a thread of its own and takes it over. Returns false,
    /// logged, when the system has no thread left; the worker is then deleted.
    bool add(const QString &token, std::unique_ptr<AutoReportWorker> worker);

    /// Queues a slot of every worker that has not ended.
    void post(const char *slot);

    /**
     * Ends all workers and forgets them, within ten seconds for all together: asks each one, breaks
     * off the connections of those that do not end, and terminates what is left.
     *
     * A worker's thread disables termination, so that none of our frames is unwound by force. One
     * that does not end even then, because the disk it writes to is stalled, is left behind and
     * logged. It ends when the disk returns.
     */
    void stopAll();

private:
    struct Entry {
        std::shared_ptr<WorkerHandle> handle;
        QPointer<QThread> thread; ///< deletes itself when it has ended
    };
    void askAll();
    void terminateAll();
    void forgetEnded(QDeadlineTimer deadline);
    void leaveBehind();

    QObject *parent;
    QMap<QString, Entry> entries;
};
