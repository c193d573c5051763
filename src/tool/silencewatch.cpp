#include "tool/silencewatch.h"

#include "db/servercertificate.h"
#include "db/serverconnection.h"

#include <QSqlError>

#include <system_error>

namespace
{

/// Opens a new connection for each probe, so that none stays open in between.
bool isAnswering(ConnectionOptions options)
{
    const QString name = QStringLiteral("AutoReport.tool.watch");
    QString error;
    {
        options.waitsForAnswers = false;
        QSqlDatabase db = options.addDatabase(name, ConnectionOptions::OnLoss::Fail);
        if (!openTrusted(db))
            error = db.lastError().nativeErrorCode();
    }
    QSqlDatabase::removeDatabase(name);
    return !isClientError(error); // with any other error, the server has answered
}

} // namespace

SilenceWatch::SilenceWatch(const QSqlDatabase &watched, const ConnectionOptions &connectionOptions)
    : socket(watched)
    , options(connectionOptions)
{
    const ServerAddress server = socket.peerAddress();
    if (!server.host.isEmpty()) { // if there are several servers, probe the connected one
        options.host = server.host;
        options.port = server.port;
    }
    try {
        thread = std::thread([this] { watch(); });
    } catch (const std::system_error &error) {
        qWarning("cannot start the thread that watches the server: %s", error.what());
    }
}

SilenceWatch::~SilenceWatch()
{
    stop.release();
    if (thread.joinable())
        thread.join();
}

void SilenceWatch::watch() const
{
    while (!stop.tryAcquire(1, options.timeoutSeconds * 1000)) {
        if (isAnswering(options))
            continue;
        socket.shutDown();
        return;
    }
}
