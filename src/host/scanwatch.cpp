#include "host/scanwatch.h"

#include <QDateTime>
#include <QEvent>
#include <QTimer>

#include <algorithm>

ScanWatch::ScanWatch(QObject &watchedPlugin)
    : plugin(watchedPlugin)
    , nextSlice(plugin.findChild<QTimer *>(QStringLiteral("nextSlice")))
{
    for (const char *name : {"scan", "soonScan", "nextSlice"}) {
        if (auto *timer = plugin.findChild<QTimer *>(QLatin1String(name)))
            timer->installEventFilter(this);
    }
}

void ScanWatch::scanNow()
{
    begin();
    if (!QMetaObject::invokeMethod(&plugin, "checkSchemas", Qt::DirectConnection))
        qWarning("Host - this plug-in cannot scan on request");
}

void ScanWatch::forgetScan()
{
    sinceBegin.invalidate();
}

qint64 ScanWatch::nextScan() const
{
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    if (sinceBegin.isValid())
        return now;
    qint64 next = 0;
    for (const char *name : {"scan", "soonScan"}) {
        const auto *timer = plugin.findChild<QTimer *>(QLatin1String(name));
        if (!timer || !timer->isActive())
            continue;
        const qint64 moment = now + timer->remainingTime() / 1000;
        next = next == 0 ? moment : std::min(next, moment);
    }
    return next;
}

bool ScanWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Timer)
        begin();
    return QObject::eventFilter(watched, event);
}

void ScanWatch::begin()
{
    if (!sinceBegin.isValid())
        sinceBegin.start();
    // Queued, because the plug-in runs the scan or its next slice after this function returns.
    QMetaObject::invokeMethod(this, &ScanWatch::endIfDone, Qt::QueuedConnection);
}

void ScanWatch::endIfDone()
{
    if (!sinceBegin.isValid() || (nextSlice && nextSlice->isActive()))
        return;
    const qint64 elapsed = sinceBegin.elapsed();
    sinceBegin.invalidate();
    Q_EMIT scanned(elapsed);
}
