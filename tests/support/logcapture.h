#pragma once

#include <QString>
#include <QStringList>

#include <vector>

struct LogLine {
    QtMsgType type;
    QString text;
};

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

    std::vector<LogLine> lines() const;
    QStringList texts(QtMsgType type) const;

    /// How many lines of that type have exactly this text.
    int count(QtMsgType type, const QString &text) const;
    /// How many lines of any type contain `part`.
    int countContaining(const QString &part) const;
    /// Whether the lines of that type are as many as `beginnings` and begin with them, in order.
    bool begin(QtMsgType type, const QStringList &beginnings) const;

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);

    std::vector<LogLine> collected; // not shared implicitly: each copy has one thread
    QtMessageHandler previous;
};

/**
 * To be called in a test's cleanup(): the test fails when a database connection is left registered
 * (those of the bench excepted), or when Qt complained that one is still in use or that an object
 * or a connection was used on the wrong thread.
 */
void checkConnections(const LogCapture &log);
