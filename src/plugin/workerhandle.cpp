#include "plugin/workerhandle.h"

#include "worker/autoreportworker.h"

#include <QMetaObject>

WorkerHandle::WorkerHandle(AutoReportWorker *liveWorker)
    : connectionGuard(liveWorker->connectionGuard())
    , worker(liveWorker)
{
}

void WorkerHandle::post(const char *slot)
{
    const std::lock_guard lock(mutex);
    if (worker)
        QMetaObject::invokeMethod(worker, slot, Qt::QueuedConnection);
}

void WorkerHandle::stopNow()
{
    AutoReportWorker *live = nullptr;
    {
        const std::lock_guard lock(mutex);
        live = worker;
    }
    // Not under the lock, because stop() calls clear(), which takes the lock. The worker still
    // exists: only this thread deletes it.
    if (live)
        live->stop();
}

void WorkerHandle::clear()
{
    const std::lock_guard lock(mutex);
    worker = nullptr;
}
