#include "host/logline.h"

#include "common/printable.h"

#include <QDateTime>

#include <sys/stat.h>

namespace
{

struct Level {
    const char *name;
    char priority; // of syslog
};

Level levelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return {"DEBUG", '7'};
    case QtInfoMsg:
        return {"INFO", '6'};
    case QtWarningMsg:
        return {"WARNING", '4'};
    case QtCriticalMsg:
        return {"CRITICAL", '3'};
    case QtFatalMsg:
        break;
    }
    return {"FATAL", '2'};
}

QByteArray harmless(QString text)
{
    text.replace(QLatin1Char('\n'), QLatin1String(" | ")); // one message stays one line
    return withoutControls(text).toUtf8();
}

QByteArray now()
{
    const QDateTime local = QDateTime::currentDateTime();
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODate).toLatin1();
}

} // namespace

LogStyle logStyleOf(int descriptor)
{
    // A child process may inherit JOURNAL_STREAM although its output goes elsewhere. Therefore
    // compare the variable with the file that is open as `descriptor`.
    struct stat file = {};
    if (::fstat(descriptor, &file) != 0)
        return LogStyle::Plain;
    const QByteArray stream = QByteArray::number(qulonglong(file.st_dev)) + ':' +
                              QByteArray::number(qulonglong(file.st_ino));
    return qgetenv("JOURNAL_STREAM") == stream ? LogStyle::Journal : LogStyle::Plain;
}

QByteArray logLine(LogStyle style, QtMsgType type, const QString &text)
{
    const Level level = levelOf(type);
    const QByteArray head = style == LogStyle::Journal ? QByteArray("<") + level.priority + '>'
                                                       : now() + ' ' + level.name + ' ';
    return head + harmless(text) + '\n';
}
