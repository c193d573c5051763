#include "worker/autoreportworker.h"

#include "db/servercertificate.h"
#include "db/serverconnection.h"
#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "worker/connectionguard.h"
#include "worker/reportbase.h"

#include <QSqlError>
#include <QThread>
#include <QTimer>

#include <utility>

namespace
{

constexpr int tickMs = 60000;

} // namespace

AutoReportWorker::AutoReportWorker(const AutoReportDbConfig &dbConfig, QObject *parent)
    : QObject(parent)
    , config(dbConfig)
    , guard(std::make_shared<ConnectionGuard>())
{
}

AutoReportWorker::~AutoReportWorker()
{
    // The reports hold handles of the connection, so they must be deleted before the connection is
    // removed. QObject would delete its children too late.
    qDeleteAll(reports);
    closeDatabase();
}

bool AutoReportWorker::start()
{
    if (active) {
        qWarning("AutoReportWorker::start() - already started: %s",
                 qUtf8Printable(config.connectionName));
        return true;
    }
    qInfo("AutoReportWorker - start() connection=%s db=%s thread=%p",
          qUtf8Printable(config.connectionName), qUtf8Printable(config.databaseName),
          QThread::currentThreadId());

    if (QSqlDatabase::contains(config.connectionName)) {
        qCritical("AutoReportWorker::start() - duplicate connection name '%s'",
                  qUtf8Printable(config.connectionName));
        return fail();
    }
    database = QSqlDatabase::addDatabase(config.driverName, config.connectionName);
    applyConfig(config, database);
    const ConnectionGuard::Use use(*guard);
    if (!openDatabase()) {
        qCritical("AutoReportWorker::start() - can not open DB '%s' on '%s': %s",
                  qUtf8Printable(config.databaseName), qUtf8Printable(config.hostName),
                  qUtf8Printable(database.lastError().text()));
        return fail();
    }

    connectionId = serverConnectionId(database);
    createReports();
    startTimer();
    active = true;
    qInfo("AutoReportWorker initialized, db='%s', host='%s', open=%s, reports=%i",
          qUtf8Printable(database.databaseName()), qUtf8Printable(database.hostName()),
          database.isOpen() ? "YES" : "NO", reports.size());
    QTimer::singleShot(0, this, &AutoReportWorker::activateReports);
    return true;
}

void AutoReportWorker::activateReports()
{
    if (!active)
        return;
    const ConnectionGuard::Use use(*guard);
    if (!keepDatabase())
        return;
    qInfo("AutoReportWorker - activateReports() db='%s'", qUtf8Printable(database.databaseName()));
    for (ReportBase *report : qAsConst(reports)) {
        // A worker that is being stopped or has lost its connection starts no further report.
        if (QThread::currentThread()->isInterruptionRequested() || guard->isBroken())
            return;
        report->doWork();
    }
}

void AutoReportWorker::pause()
{
    qInfo("AutoReportWorker - pause() db='%s'", qUtf8Printable(config.databaseName));
    if (timer)
        timer->stop();
}

void AutoReportWorker::resume()
{
    qInfo("AutoReportWorker - resume() db='%s'", qUtf8Printable(config.databaseName));
    if (active && timer)
        timer->start();
}

void AutoReportWorker::stop()
{
    qInfo("AutoReportWorker - stop() db='%s'", qUtf8Printable(config.databaseName));
    if (timer)
        timer->stop();
    active = false;
    qDeleteAll(reports);
    reports.clear();
    closeDatabase();
    Q_EMIT finished();
}

bool AutoReportWorker::fail()
{
    closeDatabase();
    Q_EMIT finished();
    return false;
}

/// Opens or reopens the connection and disables the client library's reconnect. In the middle of a
/// run, a reconnect would silently lose the report's lock. After a stop has broken the connection
/// off, the library would reconnect and wait for the server again.
bool AutoReportWorker::openDatabase()
{
    guard->release();
    if (!openWithin(database, connectSeconds))
        return false;
    forbidReconnect(database);
    guard->guard(database);
    return true;
}

/// Returns whether the connection is usable. Reopens a lost connection, so that the worker survives
/// a restart of the server. Does not reopen a connection that the worker itself has closed.
bool AutoReportWorker::keepDatabase()
{
    if (!database.isOpen() && !databaseLost)
        return false;
    const bool usable = !guard->isBroken() && isUsable(database);
    qulonglong currentId = usable ? serverConnectionId(database) : 0;
    if (connectionId == 0) // no id is known yet
        connectionId = currentId;
    if (connectionId == 0 && usable && serverAnswers(database)) // the server has no connection ids
        return true;
    const bool openedAgain = currentId == 0 && openDatabase();
    if (openedAgain)
        currentId = serverConnectionId(database);
    const bool wasLost = std::exchange(databaseLost, currentId == 0);
    if (databaseLost) {
        if (!wasLost) // logs each loss once
            qWarning("AutoReportWorker::activateReports() - no connection to db='%s': %s",
                     qUtf8Printable(config.databaseName),
                     qUtf8Printable(database.lastError().text()));
        return false;
    }
    // On another server, the new connection may by chance have the id of the old one.
    if (openedAgain || currentId != connectionId) {
        qWarning("AutoReportWorker::activateReports() - the connection to db='%s' was lost and "
                 "reopened",
                 qUtf8Printable(config.databaseName));
        connectionId = currentId;
    }
    return true;
}

void AutoReportWorker::closeDatabase()
{
    // Checks the name, because isValid() returns false for a registered connection whose driver is
    // missing.
    const QString name = database.connectionName();
    if (name.isEmpty())
        return;
    guard->release();
    if (database.isOpen())
        database.close();
    // Qt removes a connection cleanly only when no handle of it is left.
    database = QSqlDatabase();
    if (QSqlDatabase::contains(name))
        QSqlDatabase::removeDatabase(name);
}

void AutoReportWorker::createReports()
{
    // Monthly before daily, because the monthly report takes less time.
    const auto &kinds = reportKinds();
    for (auto kind = kinds.crbegin(); kind != kinds.crend(); ++kind)
        reports.append((*kind)->create(database, this));
}

void AutoReportWorker::startTimer()
{
    timer = new QTimer(this);
    timer->setInterval(tickMs);
    connect(timer, &QTimer::timeout, this, &AutoReportWorker::activateReports,
            Qt::UniqueConnection);
    timer->start();
}
