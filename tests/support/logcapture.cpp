#include "support/logcapture.h"

#include "support/testserver.h"

#include <QTest>

#include <algorithm>
#include <mutex>

namespace
{

// A thread may still be inside the handler when the object goes: both meet under this lock. Not a
// QMutex: ThreadSanitizer does not see into Qt.
std::mutex lock;
LogCapture *current = nullptr;

} // namespace

LogCapture::LogCapture()
{
    const std::lock_guard locker(lock);
    Q_ASSERT(!current);
    current = this;
    previous = qInstallMessageHandler(&LogCapture::handle);
}

LogCapture::~LogCapture()
{
    {
        const std::lock_guard locker(lock);
        current = nullptr;
        qInstallMessageHandler(previous);
    }
    if (!QTest::currentTestFailed())
        return;
    for (const LogLine &line : std::as_const(collected))
        previous(line.type, QMessageLogContext(), line.text);
}

void LogCapture::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const std::lock_guard locker(lock);
    if (current && type != QtFatalMsg)
        current->collected.push_back({type, text});
    else if (current)
        current->previous(type, context, text);
}

std::vector<LogLine> LogCapture::lines() const
{
    const std::lock_guard locker(lock);
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
    int count = 0;
    for (const LogLine &line : lines())
        count += line.text.contains(part) ? 1 : 0;
    return count;
}

bool LogCapture::begin(QtMsgType type, const QStringList &beginnings) const
{
    const QStringList all = texts(type);
    return std::equal(all.begin(), all.end(), beginnings.begin(), beginnings.end(),
                      [](const QString &line, const QString &b) { return line.startsWith(b); });
}

void checkConnections(const LogCapture &log)
{
    for (const char *complaint :
         {"still in use", "addDatabase: duplicate connection name",
          "does not belong to the calling thread", "different thread", "another thread"}) {
        if (log.countContaining(QString::fromLatin1(complaint)) != 0)
            QTest::qFail(complaint, __FILE__, __LINE__);
    }

    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        if (!name.startsWith(TestServer::ownPrefix()))
            QTest::qFail(qPrintable(QStringLiteral("left registered: ") + name), __FILE__,
                         __LINE__);
    }
}
