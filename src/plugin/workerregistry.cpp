#include "plugin/workerregistry.h"

#include "plugin/workerhandle.h"
#include "worker/autoreportworker.h"
#include "worker/connectionguard.h"

#include <algorithm>

namespace
{

constexpr int stopMs = 10000;
// How long workers may take to end on their own: a report stops at its next row, and a short query
// ends when its answer arrives. An attempt to connect may take longer.
constexpr int graceMs = 4000;

} // namespace

WorkerRegistry::WorkerRegistry(QObject *parentOfThreads)
    : parent(parentOfThreads)
{
}

WorkerRegistry::~WorkerRegistry() = default;

bool WorkerRegistry::add(const QString &token, std::unique_ptr<AutoReportWorker> owned)
{
    auto thread = std::make_unique<QThread>(parent);
    thread->setObjectName(QStringLiteral("AutoReport_%1").arg(token));
    AutoReportWorker *worker = owned.get();
    worker->moveToThread(thread.get());
    QObject::connect(thread.get(), &QThread::started, worker, &AutoReportWorker::start);
    QObject::connect(worker, &AutoReportWorker::finished, thread.get(), &QThread::quit);
    QObject::connect(worker, &AutoReportWorker::finished, worker, &QObject::deleteLater);
    QObject::connect(thread.get(), &QThread::finished, thread.get(), &QObject::deleteLater);

    // These two handlers run in the worker's thread. A queued "stop" is lost if the event loop
    // exits before delivering it. The second handler then stops the worker.
    const auto handle = std::make_shared<WorkerHandle>(worker);
    QObject::connect(
        worker, &AutoReportWorker::finished, worker, [handle] { handle->clear(); },
        Qt::DirectConnection);
    QObject::connect(
        thread.get(), &QThread::finished, thread.get(), [handle] { handle->stopNow(); },
        Qt::DirectConnection);

    thread->start(QThread::LowPriority);
    if (!thread->isRunning() && !thread->isFinished()) // Qt has logged the system's reason
        return false;
    static_cast<void>(owned.release()); // the worker deletes itself
    entries.insert(token, {handle, thread.release()});
    return true;
}

int WorkerRegistry::starting() const
{
    return static_cast<int>(std::count_if(entries.begin(), entries.end(), [](const Entry &entry) {
        return entry.thread && entry.thread->isRunning() && !entry.handle->guard().isGuarding();
    }));
}

void WorkerRegistry::post(const char *slot)
{
    for (const Entry &entry : qAsConst(entries))
        entry.handle->post(slot);
}

void WorkerRegistry::stopAll()
{
    const QDeadlineTimer deadline(stopMs);
    askAll();
    forgetEnded(QDeadlineTimer(graceMs));
    for (const Entry &entry : qAsConst(entries))
        entry.handle->guard().breakForGood();
    forgetEnded(deadline);
    leaveBehind();
}

void WorkerRegistry::askAll()
{
    // A running report ends at its next row.
    for (const Entry &entry : qAsConst(entries)) {
        if (entry.thread)
            entry.thread->requestInterruption();
    }
    post("stop");
    for (const Entry &entry : qAsConst(entries)) {
        if (entry.thread)
            entry.thread->quit();
    }
}

/// Drops the entries whose threads end before the deadline.
void WorkerRegistry::forgetEnded(QDeadlineTimer deadline)
{
    for (auto entry = entries.begin(); entry != entries.end();) {
        const QPointer<QThread> thread = entry->thread;
        entry = !thread || thread->wait(deadline) ? entries.erase(entry) : std::next(entry);
    }
}

void WorkerRegistry::leaveBehind()
{
    for (const Entry &entry : qAsConst(entries)) {
        const QString name = entry.thread->objectName();
        qWarning("AutoReport::stopAllWorkers() - thread '%s' did not stop in time",
                 qUtf8Printable(name));
        qCritical("AutoReport::stopAllWorkers() - thread '%s' cannot be ended and is left behind",
                  qUtf8Printable(name));
        entry.thread->setParent(nullptr); // it deletes itself if it ever ends
    }
    entries.clear();
}
