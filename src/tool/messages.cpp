#include "tool/messages.h"

#include "tool/output.h"

namespace
{

// Qt's message handler is a plain function, so what it collects belongs to the process.
QStringList collected;

void collect(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const QString line = message.simplified();
    // A table that cannot be read is a warning for every row.
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

QStringList Messages::take()
{
    QStringList taken;
    taken.swap(collected);
    return taken;
}

bool Messages::print()
{
    const QStringList messages = take();
    for (const QString &message : messages)
        Output::error(message);
    return !messages.isEmpty();
}
