#pragma once

#include <QStringList>

#include <utility>
#include <vector>

/**
 * Collects what is logged while it lives, from every thread, instead of printing it.
 *
 * One object at a time. When the running test has failed, the destructor prints what it collected.
 */
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    Q_DISABLE_COPY(LogCapture)

    /// Those of that type, or all.
    QStringList texts(int type = -1) const;
    /// How many lines of that type have exactly this text.
    int count(QtMsgType type, const QString &text) const { return texts(type).count(text); }
    /// How many lines of any type contain `part`.
    int countContaining(const QString &part) const { return texts().filter(part).size(); }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);

    std::vector<std::pair<QtMsgType, QString>> collected;
    QtMessageHandler previous;
};

/**
 * To be called in a test's cleanup(): the test fails when a database connection is left registered
 * (those of the bench excepted), or when Qt complained that one is still in use or that an object
 * or a connection was used on the wrong thread.
 */
void checkConnections(const LogCapture &log);
