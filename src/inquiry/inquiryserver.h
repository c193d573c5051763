#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

class QLocalServer;

/**
 * The socket on which a host answers commands. Each client that connects receives the answer, as
 * JSON, and is disconnected. Only this account and root may connect.
 *
 * Lives in a thread with an event loop, and never blocks it: a client that does not receive its
 * answer within a few seconds is disconnected. The destructor removes the socket.
 */
class InquiryServer
{
public:
    /// `answer` is called once for each client, in the object's thread.
    explicit InquiryServer(std::function<QByteArray()> answer);
    ~InquiryServer();
    Q_DISABLE_COPY(InquiryServer)

    /// Listens in `folder` unless already listening. Call it every few seconds, because a shortage
    /// of file descriptors closes the socket. Returns the error, or an empty text. The first call
    /// after such a closure returns the reason for it, even if this call has reopened the socket.
    QString listen(const QString &folder);

private:
    QString open(const QString &folder);
    void answerAll();

    const std::function<QByteArray()> answer;
    const std::unique_ptr<QLocalServer> server;
};
