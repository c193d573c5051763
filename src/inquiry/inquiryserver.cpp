#include "inquiry/inquiryserver.h"

#include "inquiry/socketfolder.h"

#include <QCoreApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <chrono>

namespace
{

constexpr auto patience = std::chrono::seconds(5);

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
    const QString error = makeSocketFolder(folder);
    if (!error.isEmpty())
        return QStringLiteral("'%1': %2").arg(folder, error);
    const QString path = QStringLiteral("%1/%2%3").arg(
        folder, QString::number(QCoreApplication::applicationPid()), QLatin1String(socketSuffix));
    // Left by a process that was killed and had this number.
    QLocalServer::removeServer(path);
    return server->listen(path) ? QString()
                                : QStringLiteral("'%1': %2").arg(path, server->errorString());
}

void InquiryServer::answerAll()
{
    while (QLocalSocket *client = server->nextPendingConnection()) {
        QObject::connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        QTimer::singleShot(patience, client, [client] { client->abort(); });
        client->write(answer());
        client->disconnectFromServer(); // once all is written
    }
}
