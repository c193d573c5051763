#include "tool/silencewatch.h"

#include <QSqlError>
#include <QThread>

namespace
{

// Errors of the client library start here. Lower numbers come from the server, which thus answers.
constexpr int firstClientError = 2000;

/// Connects anew each time, so that no connection is occupied in between.
bool isAnswering(ConnectionOptions options)
{
    const QString name = QStringLiteral("AutoReport.tool.watch");
    int error = 0;
    {
        options.waitsForAnswers = false;
        QSqlDatabase db = options.addDatabase(name, ConnectionOptions::OnLoss::Fail);
        if (!db.open())
            error = db.lastError().nativeErrorCode().toInt();
    }
    QSqlDatabase::removeDatabase(name);
    return error < firstClientError;
}

} // namespace

SilenceWatch::SilenceWatch(const QSqlDatabase &watched, const ConnectionOptions &connectionOptions)
    : socket(watched)
    , options(connectionOptions)
    , thread(QThread::create([this] { watch(); }))
{
    thread->start();
}

SilenceWatch::~SilenceWatch()
{
    stop.release();
    thread->wait();
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
