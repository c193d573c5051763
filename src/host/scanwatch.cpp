#include "host/scanwatch.h"

#include <QEvent>
#include <QTimer>

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
    // Queued: the timer has yet to run its part of the scan.
    QMetaObject::invokeMethod(this, &ScanWatch::look, Qt::QueuedConnection);
}

void ScanWatch::look()
{
    if (!sinceBegin.isValid() || (nextSlice && nextSlice->isActive()))
        return;
    const qint64 elapsed = sinceBegin.elapsed();
    sinceBegin.invalidate();
    Q_EMIT scanned(elapsed);
}
