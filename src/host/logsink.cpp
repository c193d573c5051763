#include "host/logsink.h"

#include <QDateTime>
#include <QString>

#include <atomic>

#include <unistd.h>

namespace
{

std::atomic<bool> debugShown{false};

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("DEBUG");
    case QtInfoMsg:
        return QStringLiteral("INFO");
    case QtWarningMsg:
        return QStringLiteral("WARNING");
    case QtCriticalMsg:
        return QStringLiteral("CRITICAL");
    case QtFatalMsg:
        break;
    }
    return QStringLiteral("FATAL");
}

void handle(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg && !debugShown)
        return;
    QString text = message;
    text.replace(QLatin1Char('\n'), QLatin1String(" | ")); // one message stays one line
    const QString time =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const QByteArray line = QStringLiteral("%1 %2 %3\n").arg(time, levelName(type), text).toUtf8();
    // Whether or not it could be written: there is no other place to say so.
    [[maybe_unused]] const ssize_t written =
        ::write(STDERR_FILENO, line.constData(), static_cast<size_t>(line.size()));
}

} // namespace

void LogSink::install(bool showDebug)
{
    debugShown = showDebug;
    qInstallMessageHandler(handle);
}
