#pragma once

#include "support/testdata.h"
#include "support/testserver.h"

#include <mutex>
#include <utility>
#include <vector>

/// Collects what every thread logs during its lifetime, instead of printing it. One object at a
/// time, which goes last. The test then fails when a database connection, not of the bench's own,
/// is left registered, or when Qt complained that one is still in use, or of a wrong thread for it
/// or for an object. Of a failed test all is printed.
class LogCapture
{
public:
    LogCapture()
    {
        const std::lock_guard locker(lock);
        Q_ASSERT(!current);
        current = this;
        previous = qInstallMessageHandler(&LogCapture::handle);
    }
    ~LogCapture()
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
    Q_DISABLE_COPY(LogCapture)

    /// Returns the lines of that type, or all.
    QStringList texts(int type = -1) const
    {
        const std::lock_guard locker(lock);
        QStringList result;
        for (const auto &line : collected) {
            if (type == -1 || line.first == type)
                result.append(line.second);
        }
        return result;
    }
    /// Returns how many lines of that type have exactly this text.
    int count(QtMsgType type, const QString &text) const { return texts(type).count(text); }
    /// Returns how many lines of any type contain `part`.
    int countContaining(const QString &part) const { return texts().filter(part).size(); }
    /// Waits until that many lines contain `part`.
    bool gets(const QString &part, int times) const
    {
        return QTest::qWaitFor([&] { return countContaining(part) == times; }, patienceMs);
    }

private:
    void checkConnections() const
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

    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        const std::lock_guard locker(lock);
        if (current && type != QtFatalMsg)
            current->collected.emplace_back(type, text);
        else if (current)
            current->previous(type, context, text);
    }

    // A thread may still be inside the handler when the object goes: both meet under this lock. Not
    // a QMutex: ThreadSanitizer does not see into Qt.
    inline static std::mutex lock;
    inline static LogCapture *current = nullptr;

    std::vector<std::pair<QtMsgType, QString>> collected;
    QtMessageHandler previous;
};
