#include "inquiry/inquiryserver.h"

#include "inquiry/hostconnection.h"
#include "inquiry/socketfolder.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <chrono>

namespace
{

constexpr auto patience = std::chrono::seconds(5);

QString ownPath(const QString &folder)
{
    return QStringLiteral("%1/%2%3").arg(
        folder, QString::number(QCoreApplication::applicationPid()), QLatin1String(socketSuffix));
}

/// Removes the sockets of hosts that were killed.
void removeLeftBehind(const QString &folder)
{
    for (const QString &path : socketsIn(folder)) {
        if (!HostConnection(path).isHost)
            QFile::remove(path);
    }
}

/// Returns why the server failed to accept a connection, or an empty text. QLocalServer's text
/// identifies most errors only by number.
QString acceptError(const QLocalServer &server)
{
    const QString text = server.errorString();
    const int number = text.section(QLatin1Char(' '), -1).toInt();
    return number == 0 ? text : qt_error_string(number);
}

} // namespace

InquiryServer::InquiryServer(std::function<QByteArray()> answerFunction)
    : answer(std::move(answerFunction))
    , server(std::make_unique<QLocalServer>())
{
    server->setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(server.get(), &QLocalServer::newConnection, server.get(),
                     [this] { answerAll(); });
}

InquiryServer::~InquiryServer() = default;

QString InquiryServer::listen(const QString &folder)
{
    // If QLocalServer fails to accept a connection, it closes and removes its socket, but
    // isListening() still returns true.
    const QString closed = server->isListening() ? acceptError(*server) : QString();
    if (server->isListening() && closed.isEmpty())
        return QString();
    server->close();
    const QString error = open(folder);
    return closed.isEmpty() ? error
                            : QStringLiteral("'%1' was closed: %2").arg(ownPath(folder), closed);
}

QString InquiryServer::open(const QString &folder)
{
    const QString error = makeSocketFolder(folder);
    if (!error.isEmpty())
        return QStringLiteral("'%1': %2").arg(folder, error);
    const QString path = ownPath(folder);
    removeLeftBehind(folder);
    QLocalServer::removeServer(path); // in case a file of that name was left behind
    return server->listen(path) ? QString()
                                : QStringLiteral("'%1': %2").arg(path, server->errorString());
}

void InquiryServer::answerAll()
{
    while (QLocalSocket *client = server->nextPendingConnection()) {
        QObject::connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        QTimer::singleShot(patience, client, [client] { client->abort(); });
        client->write(answer());
        client->disconnectFromServer(); // takes effect after the answer is written
    }
}
