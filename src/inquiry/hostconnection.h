#pragma once

#include <QByteArray>
#include <QString>

/**
 * A connection to a host's socket that receives the host's answer.
 *
 * Never waits: the owner polls the descriptor and calls take(). The first error ends it.
 */
class HostConnection
{
public:
    explicit HostConnection(const QString &path);
    ~HostConnection();
    Q_DISABLE_COPY(HostConnection)

    /// False once the answer is complete or will not come.
    bool isOpen() const { return socket != -1; }
    /// Returns -1 while there is nothing to wait for: the host's queue of connections may be full.
    int descriptor() const { return isConnected ? socket : -1; }
    /// Connects if that is still to be done, and receives what has arrived.
    void take();
    void end(const QString &why);

    const QString path;
    QByteArray bytes;
    QString error;
    bool isHost = true; ///< otherwise a host that was killed left the socket behind

private:
    void connect();

    int socket = -1;
    bool isConnected = false;
};
