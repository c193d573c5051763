// AutoReport's scan for schemas with an automatic report enabled.

#include "plugin/autoreport.h"

#include "common/freshquery.h"
#include "db/dbmanager.h"
#include "db/schemaregistry.h"
#include "db/serversocket.h"
#include "plugin/descriptors.h"
#include "plugin/serverwatch.h"
#include "reports/reportkind.h"
#include "worker/autoreportworker.h"
#include "worker/connectionguard.h"

#include <QElapsedTimer>
#include <QSqlError>
#include <QTimer>
#include <QUuid>

namespace
{

constexpr int sliceMs = 200;
constexpr int retryMs = 60000;
// A worker needs two descriptors for its socket and one for its thread's event loop; its report
// needs one or two for files. One is kept in reserve. descriptorsSpared are left to the host.
constexpr int descriptorsPerWorker = 6;
constexpr int descriptorsSpared = 24;

const char *yesNo(bool value)
{
    return value ? "YES" : "NO";
}

} // namespace

void AutoReport::handleTimer()
{
    if (debugLevel)
        qDebug("~~~ AutoReport::handleTimer() - periodic schema check ~~~");
    checkSchemas();
}

void AutoReport::checkSchemas()
{
    if (!started || !infoDb || !dbManager || nextSlice->isActive())
        return;
    if (debugLevel)
        qDebug("AutoReport::checkSchemas()");

    soonScan->stop();
    scan = Scan();
    scan.descriptors = spareDescriptors() - descriptorsSpared;
    guardInfoDatabase();
    const ConnectionGuard::Use use(*infoGuard);
    scan.total = dbManager->tokensCount(true);
    if (scan.total == 0) {
        checkRegistry(); // the manager returns 0 for an error, too
        leaveScan();
        if (debugLevel)
            qInfo("AutoReport::checkSchemas() - no schemas found");
        return;
    }
    scanPending = true;
    scanSlice();
}

/// Makes the scan end if the information database cannot be read.
void AutoReport::checkRegistry()
{
    QSqlDatabase info = dbManager->getInfoDB();
    if (!info.isValid() || infoGuard->isBroken())
        return;
    if (!dbManager->checkOpenDB(info)) { // reopens `info` if the manager has closed it
        loseServer(QStringLiteral("the information database cannot be opened: ") +
                   info.lastError().text());
    } else if (const auto fault = SchemaRegistry(info).check()) {
        loseServer(QStringLiteral("the table schemas cannot be read: ") + fault->text);
    }
}

/// Makes the scan end because of `obstacle`. A new scan then begins a minute later.
void AutoReport::loseServer(const QString &obstacle)
{
    scan.obstacle = obstacle;
    scan.isServerLost = true;
}

/// Lets the watch break off the connection to the information database if the server falls silent
/// during the scan.
void AutoReport::guardInfoDatabase()
{
    const QSqlDatabase info = dbManager->getInfoDB();
    limitReconnect(info, connectSeconds);
    infoGuard->guard(info);
}

/// Ends the guarding. Closes the connection if the watch has broken it off: Qt still considers it
/// open, and the manager would not reopen it for the next query.
void AutoReport::releaseInfoDatabase()
{
    if (infoGuard->isBroken())
        dbManager->getInfoDB().close();
    infoGuard->release();
}

/// Visits schemas until the time of the slice is over, all schemas are visited, or an obstacle ends
/// the scan.
void AutoReport::scanSlice()
{
    if (!started || !dbManager) // the host may have unset the manager between two slices
        return;
    guardInfoDatabase();
    const ConnectionGuard::Use use(*infoGuard);
    QElapsedTimer elapsed;
    elapsed.start();
    while (scan.obstacle.isEmpty() && (!scan.page.isEmpty() || scan.visited < scan.total)) {
        if (elapsed.hasExpired(sliceMs)) {
            nextSlice->start(0);
            return;
        }
        if (scan.page.isEmpty())
            scan.page = dbManager->loadTokens(SchemaRegistry::tokensPerPage, scan.visited);
        if (scan.page.isEmpty()) {
            checkRegistry();
            break;
        }
        ++scan.visited;
        checkSchema(scan.page.takeFirst());
    }
    endScan();
}

void AutoReport::endScan()
{
    if (scan.obstacle.isEmpty() && scan.hasUnreachable) // the server may have shut down
        checkRegistry();
    leaveScan();
    if (debugLevel)
        qInfo("AutoReport::checkSchemas() - active workers: %i / %u schemas checked (total "
              "schemas: %u)",
              workers.size(), scan.visited, scan.total);
}

void AutoReport::leaveScan()
{
    scanPending = false;
    if (infoGuard->isBroken())
        loseServer(QStringLiteral("the server does not answer"));
    releaseInfoDatabase();
    if (scan.isServerLost) { // customers not served yet cannot wait an hour
        scanPending = true;
        soonScan->start(retryMs);
    }
    if (!scan.obstacle.isEmpty())
        qWarning("AutoReport::checkSchemas() - %s: the scan ends at schema %u of %u; the next scan "
                 "tries again",
                 qUtf8Printable(scan.obstacle), scan.visited, scan.total);
}

/// Reserves `wanted` file descriptors. If too few are left, makes the scan end and returns false.
bool AutoReport::takeDescriptors(int wanted)
{
    scan.descriptors -= wanted;
    if (scan.descriptors < 0) { // count again: the host may have closed files
        const int promised = workers.starting() * descriptorsPerWorker;
        scan.descriptors = spareDescriptors() - descriptorsSpared - promised - wanted;
    }
    if (scan.descriptors >= 0)
        return true;
    scan.obstacle = QStringLiteral("too few file descriptors left (ulimit -n)");
    return false;
}

void AutoReport::checkSchema(const QString &token)
{
    if (workers.contains(token))
        return;
    const bool registered = dbManager->isDatabase(token);
    if (!takeDescriptors(registered ? 0 : 1))
        return;
    QElapsedTimer elapsed;
    elapsed.start();
    const QSqlDatabase db = dbManager->getDatabase(token);
    // The manager returns the default connection if it cannot connect to the schema.
    const bool valid =
        db.isValid() && db.connectionName() == dbManager->getConnectionNameFromToken(token);
    if (!valid)
        qWarning("AutoReport::checkSchemas() - invalid database for token '%s'",
                 qUtf8Printable(token));
    // All schemas are on the same server: if one times out, the others will, too.
    const bool failed = !valid || !db.isOpen();
    scan.hasUnreachable |= failed;
    if (failed && elapsed.hasExpired(limitReached(connectSeconds).count()))
        loseServer(QStringLiteral("the server does not answer"));
    else if (valid && checkAutoReport(db))
        serveSchema(token, db);
}

void AutoReport::serveSchema(const QString &token, const QSqlDatabase &db)
{
    if (!takeDescriptors(descriptorsPerWorker))
        return;
    const QString name = QStringLiteral("AutoReport.worker.%1.%2").arg(token, addressText());
    if (!workers.add(token, createWorker(makeDbConfig(db, name)))) {
        scan.obstacle = QStringLiteral("cannot start a thread for a worker");
        return;
    }
    qInfo("AutoReport::checkSchemas() - worker created for schema '%s' (%s)", qUtf8Printable(token),
          qUtf8Printable(db.databaseName()));
}

/// Returns whether the schema has a report enabled. Uses a connection of its own, so that the
/// manager's connection remains unchanged.
bool AutoReport::checkAutoReport(const QSqlDatabase &db)
{
    const QString name = QStringLiteral("AutoReport.check.%1")
                             .arg(QUuid::createUuid().toString(QUuid::WithoutBraces));
    bool enabled = false;
    {
        QSqlDatabase check = QSqlDatabase::cloneDatabase(db, name);
        if (debugLevel)
            qDebug("AutoReport::checkAutoReport(%s)", qUtf8Printable(name));
        QElapsedTimer elapsed;
        elapsed.start();
        if (openWithin(check, connectSeconds, Limited::Queries)) {
            elapsed.restart();
            enabled = queryEnabled(check);
            check.close();
        } else {
            qWarning("AutoReport::checkAutoReport(%s) - can not open database '%s': %s",
                     qUtf8Printable(name), qUtf8Printable(check.databaseName()),
                     qUtf8Printable(check.lastError().text()));
        }
        if (!enabled && elapsed.hasExpired(limitReached(connectSeconds).count()))
            loseServer(QStringLiteral("the server does not answer"));
    }
    QSqlDatabase::removeDatabase(name);
    return enabled;
}

bool AutoReport::queryEnabled(const QSqlDatabase &db)
{
    const auto &kinds = reportKinds();
    QStringList keys;
    for (const ReportKind *kind : kinds)
        keys.append(QStringLiteral("'%1'").arg(kind->key("enabled")));
    QSqlQuery query = freshQuery(db);
    if (!query.exec(QStringLiteral("SELECT name, value FROM vars WHERE name IN (%1)")
                        .arg(keys.join(QStringLiteral(", "))))) {
        qCritical("AutoReport::checkAutoReport(%s) - SQL ERROR: %s",
                  qUtf8Printable(db.databaseName()), qUtf8Printable(query.lastError().text()));
        return false;
    }
    QMap<QString, bool> enabled;
    while (query.next())
        enabled.insert(query.value(0).toString(), query.value(1).toInt() == 1);

    bool any = false;
    QString verdicts;
    for (const ReportKind *kind : kinds) {
        const bool on = enabled.value(kind->key("enabled"));
        verdicts +=
            QStringLiteral("%1=%2, ").arg(QLatin1String(kind->word), QLatin1String(yesNo(on)));
        any = any || on;
    }
    if (debugLevel)
        qInfo("AutoReport::checkAutoReport(%s) - %sresult=%s", qUtf8Printable(db.databaseName()),
              qUtf8Printable(verdicts), yesNo(any));
    return any;
}

AutoReportDbConfig AutoReport::makeDbConfig(const QSqlDatabase &db,
                                            const QString &connectionName) const
{
    AutoReportDbConfig config;
    config.driverName = db.driverName();
    config.connectionName = connectionName;
    config.hostName = db.hostName();
    config.port = db.port();
    config.databaseName = db.databaseName();
    config.userName = db.userName();
    config.password = db.password();
    config.connectOptions = db.connectOptions();
    return config;
}

std::unique_ptr<AutoReportWorker> AutoReport::createWorker(const AutoReportDbConfig &config)
{
    if (debugLevel)
        qDebug("AutoReport::createWorker(%s, db=%s)", qUtf8Printable(config.connectionName),
               qUtf8Printable(config.databaseName));
    auto worker = std::make_unique<AutoReportWorker>(config, nullptr);
    watch->add(config, worker->connectionGuard(), ServerWatch::limitsOfWorkers);
    return worker;
}
