#include "tool/messages.h"

namespace
{

QStringList collected;

void collect(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        collected.append(message.simplified());
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
