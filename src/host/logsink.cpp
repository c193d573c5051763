#include "host/logsink.h"

#include "host/logrepeats.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QString>

#include <mutex>

#include <unistd.h>

namespace
{

std::mutex lock; // guards the variables below; each line is written with it held
bool everythingShown = false;
QElapsedTimer sinceInstalled;
LogRepeats warnings;
LogRepeats criticals;
std::function<void(const QString &)> listener;

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

void write(QtMsgType type, const QString &message)
{
    QString text = message;
    text.replace(QLatin1Char('\n'), QLatin1String(" | ")); // one message stays one line
    for (QChar &c : text) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7F)
            c = QChar::ReplacementCharacter; // a text from a database must not control a terminal
    }
    const QString time =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const QByteArray line = QStringLiteral("%1 %2 %3\n").arg(time, levelName(type), text).toUtf8();
    // A failed write is ignored: nowhere else to report it.
    [[maybe_unused]] const ssize_t written =
        ::write(STDERR_FILENO, line.constData(), static_cast<size_t>(line.size()));
}

void writeSummaries(QtMsgType type, LogRepeats &repeats)
{
    const QStringList summaries = repeats.takeSummaries(sinceInstalled.elapsed());
    if (everythingShown)
        return;
    for (const QString &summary : summaries)
        write(type, summary);
}

bool isShown(QtMsgType type, const QString &message)
{
    bool isNews = type != QtDebugMsg;
    if (type == QtWarningMsg)
        isNews = warnings.isShown(message, sinceInstalled.elapsed());
    else if (type == QtCriticalMsg)
        isNews = criticals.isShown(message, sinceInstalled.elapsed());
    return isNews || everythingShown;
}

void handle(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const std::lock_guard guard(lock);
    // No timer needed: workers log with every tick.
    writeSummaries(QtWarningMsg, warnings);
    writeSummaries(QtCriticalMsg, criticals);
    if (isShown(type, message))
        write(type, message);
    if (listener)
        listener(message);
}

} // namespace

void LogSink::install(bool showEverything)
{
    everythingShown = showEverything;
    sinceInstalled.start();
    qInstallMessageHandler(handle);
}

void LogSink::setListener(std::function<void(const QString &)> newListener)
{
    const std::lock_guard guard(lock);
    listener = std::move(newListener);
}

int LogSink::recentProblems()
{
    const std::lock_guard guard(lock);
    return warnings.count() + criticals.count();
}
