#include "tool/silencewatch.h"

#include <QSqlError>
#include <QThread>

namespace
{

// The client library's own errors begin here; those below, a full server for example, are answers.
constexpr int firstClientError = 2000;

/// A connection for each question: none is kept from the hosts in between.
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
