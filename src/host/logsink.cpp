#include "host/logsink.h"

#include "host/logline.h"
#include "host/logrepeats.h"
#include "host/logtoken.h"

#include <QElapsedTimer>
#include <QString>

#include <mutex>

#include <unistd.h>

namespace
{

std::mutex lock; // guards the variables below; held while a line is written
bool everythingShown = false;
LogStyle style = LogStyle::Plain;
QElapsedTimer sinceInstalled;
LogRepeats warnings;
LogRepeats criticals;
std::function<void(QtMsgType, const QString &)> listener;

void write(QtMsgType type, const QString &text)
{
    const QByteArray line = logLine(style, type, text);
    // A failed write is ignored: there is nowhere else to report it.
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

/// Returns whether `message` is an info line that can recur at every tick of every schema,
/// thousands of times a day. The line that ends a run without a queued mail is such a line,
/// because the next tick usually repeats the run; another line says why no mail was queued.
bool isOfTick(const QString &message)
{
    return message.endsWith(QLatin1String("::doWork()")) ||
           message.startsWith(QLatin1String("AutoReportWorker - activateReports()")) ||
           message.endsWith(QLatin1String(", mails queued: 0"));
}

bool isNews(QtMsgType type, const QString &message, const QString &text)
{
    switch (type) {
    case QtDebugMsg:
        return false;
    case QtInfoMsg:
        return !isOfTick(message);
    case QtWarningMsg:
        return warnings.isShown(text, sinceInstalled.elapsed());
    case QtCriticalMsg:
        return criticals.isShown(text, sinceInstalled.elapsed());
    case QtFatalMsg:
        break;
    }
    return true;
}

void handle(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // Few of the plug-in's messages name the customer, so add the schema's token.
    const QString token = tokenOfThread();
    const QString text = token.isEmpty() ? message : token + QLatin1String(": ") + message;
    const std::lock_guard guard(lock);
    // No timer is needed for the summaries, because workers log at every tick.
    writeSummaries(QtWarningMsg, warnings);
    writeSummaries(QtCriticalMsg, criticals);
    if (isNews(type, message, text) || everythingShown)
        write(type, text);
    if (listener)
        listener(type, message);
}

} // namespace

void LogSink::install(bool showEverything)
{
    everythingShown = showEverything;
    style = logStyleOf(STDERR_FILENO);
    sinceInstalled.start();
    qInstallMessageHandler(handle);
}

void LogSink::setListener(std::function<void(QtMsgType, const QString &)> newListener)
{
    const std::lock_guard guard(lock);
    listener = std::move(newListener);
}

int LogSink::recentProblems()
{
    const std::lock_guard guard(lock);
    return warnings.count() + criticals.count();
}
