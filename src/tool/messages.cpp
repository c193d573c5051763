#include "tool/messages.h"

#include "tool/output.h"

#include <QMutex>
#include <QStringList>

namespace
{

// Qt's message handler is a plain function, so the collected lines are global.
QStringList collected;
QMutex mutex;

void collect(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const QString line = message.simplified();
    const QMutexLocker locker(&mutex);
    // Keeps each line once: an unreadable table causes the same warning for each row of a report.
    if (type != QtDebugMsg && type != QtInfoMsg && !collected.contains(line))
        collected.append(line);
}

} // namespace

Messages::Messages()
    : previous(qInstallMessageHandler(collect))
{
}

Messages::~Messages()
{
    qInstallMessageHandler(previous);
    collected.clear();
}

bool Messages::print()
{
    QStringList messages;
    {
        const QMutexLocker locker(&mutex);
        messages.swap(collected);
    }
    for (const QString &message : qAsConst(messages))
        Output::error(message);
    return !messages.isEmpty();
}
