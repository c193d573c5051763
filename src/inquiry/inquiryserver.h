#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

class QLocalServer;

/**
 * The socket at which a host can be asked. Each client receives the answer, as JSON, and is
 * disconnected. Only this account and root may connect.
 *
 * Lives in a thread with an event loop, which never waits for a client: one that does not take its
 * answer within a few seconds is dropped. The destructor removes the socket.
 */
class InquiryServer
{
public:
    /// Calls `answer`, in the thread of the object, for each client.
    explicit InquiryServer(std::function<QByteArray()> answer);
    ~InquiryServer();
    Q_DISABLE_COPY(InquiryServer)

    /// Listens in `folder` unless it already does. Call it every few seconds, because a shortage of
    /// file descriptors closes the socket. Returns the error, or an empty text. The first call
    /// after the socket was closed returns the reason, even if it listens again.
    QString listen(const QString &folder);

private:
    QString open(const QString &folder);
    void answerAll();

    const std::function<QByteArray()> answer;
    const std::unique_ptr<QLocalServer> server;
};
