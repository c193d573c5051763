#include "support/logcapture.h"

#include "support/testdata.h"
#include "support/testserver.h"

#include <QTest>

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
    checkConnections();
    for (const auto &[type, text] : collected) {
        if (QTest::currentTestFailed())
            previous(type, QMessageLogContext(), text);
    }
}

void LogCapture::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const std::lock_guard locker(lock);
    if (current && type != QtFatalMsg)
        current->collected.emplace_back(type, text);
    else if (current)
        current->previous(type, context, text);
}

QStringList LogCapture::texts(int type) const
{
    const std::lock_guard locker(lock);
    QStringList result;
    for (const auto &line : collected) {
        if (type == -1 || line.first == type)
            result.append(line.second);
    }
    return result;
}

bool LogCapture::gets(const QString &part, int times) const
{
    return QTest::qWaitFor([&] { return countContaining(part) == times; }, patienceMs);
}

void LogCapture::checkConnections() const
{
    QStringList faults;
    for (const char *complaint :
         {"still in use", "addDatabase: duplicate connection name",
          "does not belong to the calling thread", "different thread", "another thread"})
        faults += texts().filter(complaint);
    for (const QString &name : QSqlDatabase::connectionNames()) {
        if (!name.startsWith(TestServer::ownPrefix))
            faults += "left registered: " + name;
    }
    for (const QString &fault : faults)
        QTest::qFail(qPrintable(fault), __FILE__, __LINE__);
}
