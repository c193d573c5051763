#pragma once

#include <QStringList>

#include <utility>
#include <vector>

/// Collects what every thread logs during its lifetime, instead of printing it.
/// One object at a time, which goes last. The test then fails when a database connection, not of
/// the bench's own, is left registered, or when Qt complained that one is still in use, or of a
/// wrong thread for it or for an object. Of a failed test all is printed.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    Q_DISABLE_COPY(LogCapture)

    /// Returns the lines of that type, or all.
    QStringList texts(int type = -1) const;
    /// Returns how many lines of that type have exactly this text.
    int count(QtMsgType type, const QString &text) const { return texts(type).count(text); }
    /// Returns how many lines of any type contain `part`.
    int countContaining(const QString &part) const { return texts().filter(part).size(); }
    /// Waits until that many lines contain `part`.
    bool gets(const QString &part, int times) const;

private:
    void checkConnections() const;
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);

    std::vector<std::pair<QtMsgType, QString>> collected;
    QtMessageHandler previous;
};
