// The scan: which schemas have an automatic report switched on.

#include "plugin/autoreport.h"

#include "common/freshquery.h"
#include "db/dbmanager.h"
#include "reports/reportkind.h"
#include "worker/autoreportworker.h"

#include <QElapsedTimer>
#include <QSqlError>
#include <QTimer>
#include <QUuid>

namespace
{

constexpr unsigned int tokensPerPage = 1000;
constexpr int sliceMs = 200;

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
    if (!started || !infoDb || nextSlice->isActive())
        return;
    if (debugLevel)
        qDebug("AutoReport::checkSchemas()");

    scan = Scan();
    scan.total = dbManager->tokensCount(true);
    if (scan.total == 0) {
        scanPending = false;
        if (debugLevel)
            qInfo("AutoReport::checkSchemas() - no schemas found");
        return;
    }
    scanPending = true;
    scanSlice();
}

/// Visits schemas until the slice is over or all are visited.
void AutoReport::scanSlice()
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!scan.page.isEmpty() || scan.visited < scan.total) {
        if (elapsed.hasExpired(sliceMs)) {
            nextSlice->start(0);
            return;
        }
        if (scan.page.isEmpty())
            scan.page = dbManager->loadTokens(tokensPerPage, scan.visited);
        if (scan.page.isEmpty())
            break;
        ++scan.visited;
        checkSchema(scan.page.takeFirst());
    }
    scanPending = false;
    if (debugLevel)
        qInfo("AutoReport::checkSchemas() - active workers: %i / %u schemas checked (total "
              "schemas: %u)",
              workers.size(), scan.visited, scan.total);
}

void AutoReport::checkSchema(const QString &token)
{
    if (workers.contains(token))
        return;
    const QSqlDatabase db = dbManager->getDatabase(token);
    // Without a way to the schema the manager returns another database, the default connection.
    if (!db.isValid() || db.connectionName() != dbManager->getConnectionNameFromToken(token)) {
        qWarning("AutoReport::checkSchemas() - invalid database for token '%s'",
                 qUtf8Printable(token));
        return;
    }
    if (!checkAutoReport(db))
        return;

    const QString name = QStringLiteral("AutoReport.worker.%1.%2").arg(token, addressText());
    if (!workers.add(token, createWorker(makeDbConfig(db, name)))) {
        qWarning(
            "AutoReport::checkSchemas() - no thread for the worker of schema '%s', tried again "
            "at the next scan",
            qUtf8Printable(token));
        return;
    }
    qInfo("AutoReport::checkSchemas() - worker created for schema '%s' (%s)", qUtf8Printable(token),
          qUtf8Printable(db.databaseName()));
}

/// Asks over a connection of its own: the one that the manager keeps for this thread stays as
/// it is.
bool AutoReport::checkAutoReport(const QSqlDatabase &db)
{
    const QString name = QStringLiteral("AutoReport.check.%1")
                             .arg(QUuid::createUuid().toString(QUuid::WithoutBraces));
    bool enabled = false;
    {
        QSqlDatabase check = QSqlDatabase::cloneDatabase(db, name);
        if (debugLevel)
            qDebug("AutoReport::checkAutoReport(%s)", qUtf8Printable(name));
        if (check.open()) {
            enabled = queryEnabled(check);
            check.close();
        } else {
            qWarning("AutoReport::checkAutoReport(%s) - can not open database '%s': %s",
                     qUtf8Printable(name), qUtf8Printable(check.databaseName()),
                     qUtf8Printable(check.lastError().text()));
        }
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
    return std::make_unique<AutoReportWorker>(config, nullptr);
}
