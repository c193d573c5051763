#include "support/logcapture.h"

#include <QMutex>
#include <QTest>

#include <algorithm>

namespace
{

// A thread may still be inside the handler when the object goes: both meet under this lock.
QMutex lock;
LogCapture *current = nullptr;

} // namespace

LogCapture::LogCapture()
{
    const QMutexLocker locker(&lock);
    Q_ASSERT(!current);
    current = this;
    previous = qInstallMessageHandler(&LogCapture::handle);
}

LogCapture::~LogCapture()
{
    {
        const QMutexLocker locker(&lock);
        current = nullptr;
        qInstallMessageHandler(previous);
    }
    if (!QTest::currentTestFailed())
        return;
    for (const LogLine &line : qAsConst(collected))
        previous(line.type, QMessageLogContext(), line.text);
}

void LogCapture::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const QMutexLocker locker(&lock);
    if (current && type != QtFatalMsg)
        current->collected.append({type, text});
    else if (current)
        current->previous(type, context, text);
}

QVector<LogLine> LogCapture::lines() const
{
    const QMutexLocker locker(&lock);
    return collected;
}

QStringList LogCapture::texts(QtMsgType type) const
{
    QStringList result;
    for (const LogLine &line : lines()) {
        if (line.type == type)
            result.append(line.text);
    }
    return result;
}

int LogCapture::count(QtMsgType type, const QString &text) const
{
    return texts(type).count(text);
}

int LogCapture::countContaining(const QString &part) const
{
    const QVector<LogLine> all = lines();
    return static_cast<int>(std::count_if(
        all.begin(), all.end(), [&part](const LogLine &line) { return line.text.contains(part); }));
}

bool LogCapture::begin(QtMsgType type, const QStringList &beginnings) const
{
    const QStringList all = texts(type);
    return std::equal(all.begin(), all.end(), beginnings.begin(), beginnings.end(),
                      [](const QString &line, const QString &b) { return line.startsWith(b); });
}

void LogCapture::clear()
{
    const QMutexLocker locker(&lock);
    collected.clear();
}
