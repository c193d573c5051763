#include "host/queuewatch.h"

#include "common/freshquery.h"
#include "db/dbmanager.h"
#include "db/serverlist.h"
#include "host/hoststate.h"
#include "host/workers.h"

#include <QTimer>
#include <QVariant>

#include <chrono>

namespace
{

constexpr auto interval = std::chrono::minutes(5);

} // namespace

QueueWatch::QueueWatch(const ConnectionOptions &connectionOptions, const DBManager &dbManager,
                       HostState &hostState)
    : options(connectionOptions)
    , manager(dbManager)
    , state(hostState)
{
    context.moveToThread(&thread);
    QObject::connect(&thread, &QThread::started, &context, [this] {
        auto *timer = new QTimer; // deleted when the thread finishes
        QObject::connect(timer, &QTimer::timeout, &context, [this] { askAll(); });
        QObject::connect(&thread, &QThread::finished, timer, &QObject::deleteLater);
        timer->start(interval);
    });
    thread.start(QThread::LowPriority);
}

QueueWatch::~QueueWatch()
{
    requestStop();
    thread.quit();
    thread.wait();
}

void QueueWatch::ask()
{
    const auto askQueued = [this] {
        askAll();
    };
    QMetaObject::invokeMethod(&context, askQueued, Qt::QueuedConnection);
}

void QueueWatch::askAll()
{
    const QStringList tokens = servedTokens();
    for (const QString &token : tokens) {
        if (QThread::currentThread()->isInterruptionRequested())
            return;
        askSchema(token);
    }
}

/// If the schema cannot be queried, keeps its last numbers. Logs nothing, because the schema's
/// worker logs a lost connection.
void QueueWatch::askSchema(const QString &token)
{
    ConnectionOptions connection = options;
    if (!options.single) {
        const DBSchemeRecord record = manager.getDbConnRecord(token);
        connection.databaseName = record.name;
        connection.user = record.user;
        connection.password = record.pass;
    }
    const QString name = QStringLiteral("AutoReport.queue");
    {
        QSqlDatabase db = connection.addDatabase(name, ConnectionOptions::OnLoss::Fail);
        db.setConnectOptions(
            db.connectOptions() +
            QStringLiteral(";MYSQL_OPT_CONNECT_TIMEOUT=5;MYSQL_OPT_READ_TIMEOUT=10"));
        if (openOnAny(db)) {
            QSqlQuery query = freshQuery(db);
            if (query.exec(QStringLiteral(
                    "SELECT COUNT(*), MIN(created) FROM emails WHERE status = 'Q'")) &&
                query.next())
                state.takeQueue(options.single ? options.databaseName : token,
                                query.value(0).toInt(), query.value(1).toLongLong());
        }
    }
    QSqlDatabase::removeDatabase(name);
}
