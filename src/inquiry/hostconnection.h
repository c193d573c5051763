#pragma once

#include <QByteArray>
#include <QString>

/**
 * Connects to the socket of a host and receives the host's answer.
 *
 * Never waits: the owner polls the descriptor and calls take(). The first error ends the
 * connection.
 */
class HostConnection
{
public:
    explicit HostConnection(const QString &path);
    ~HostConnection();
    Q_DISABLE_COPY(HostConnection)

    /// Returns false once the answer is complete or will not come.
    bool isOpen() const { return socket != -1; }
    /// Returns the descriptor to poll; -1 while not connected, for example because the host's
    /// backlog is full.
    int descriptor() const { return isConnected ? socket : -1; }
    /// Connects if not yet connected. Then receives at most 64 KiB of what has arrived.
    void take();
    /// Closes the connection. `why` is the error; empty if the answer is complete.
    void end(const QString &why);

    const QString path;
    QByteArray bytes;   ///< received so far
    QString error;      ///< why the connection ended early; otherwise empty
    bool isHost = true; ///< false if no process listens on the socket any more

private:
    void connect();

    int socket = -1;
    bool isConnected = false;
};
