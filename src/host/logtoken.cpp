#include "host/logtoken.h"

#include <QThread>

QString tokenOfThread()
{
    const auto prefix = QLatin1String("AutoReport_");
    const QString name = QThread::currentThread()->objectName();
    return name.startsWith(prefix) ? name.mid(prefix.size()) : QString();
}
