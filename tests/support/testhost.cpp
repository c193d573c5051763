#include "support/testhost.h"

#include <QTimer>

#include <algorithm>

TestHost::TestHost(bool withInfoDatabase)
    : info(TestDatabase::Tables::Info)
{
    QSqlDatabase db = TestServer::addConnection("KVH.InfoDB", info.name());
    dbManager.setInfoDB(db);
    if (withInfoDatabase)
        dbManager.checkOpenDB(db);
}

TestHost::~TestHost()
{
    for (const QString &token : qAsConst(allTokens)) {
        const QString name = dbManager.getConnectionNameFromToken(token);
        if (dbManager.isConnection(token))
            QSqlDatabase::database(name, false).close();
        dbManager.addUnusedConnection(name);
    }
    dbManager.removeUnusedConnections();
    dbManager.setInfoDB(QSqlDatabase());
    QSqlDatabase::removeDatabase("KVH.InfoDB");
}

void TestHost::addSchemas(const QStringList &tokens, const TestDatabase &database)
{
    info.addSchemas(tokens, database.name());
    allTokens += tokens;
}

void enableDailyReport(const TestDatabase &schema, const QString &recipients)
{
    const QString sql = "REPLACE INTO vars VALUES ('autoReport.DailyAtten.enabled', '1'), "
                        "('autoReport.DailyAtten.emails', '%1')";
    schema.exec(sql.arg(recipients));
}

void enableBothReports(const TestDatabase &schema, const QString &recipients)
{
    enableDailyReport(schema, recipients);
    schema.exec("REPLACE INTO vars SELECT REPLACE(name, 'Daily', 'Monthly'), value FROM vars "
                "WHERE name LIKE 'autoReport.DailyAtten.%'");
}

void makeDue(const TestDatabase &schema)
{
    schema.exec("DELETE FROM emails;\nDELETE FROM vars WHERE name LIKE '%lastGenerated'");
}

void addPeople(const TestDatabase &schema, int count)
{
    const QString sql = "INSERT INTO people (uid, pid, name, surname) SELECT seq, seq + 100, "
                        "'Ján', CONCAT('Priezvisko', seq) FROM seq_1_to_%1";
    schema.exec(sql.arg(count));
}

bool isScanning(const QObject &plugin)
{
    const auto timers = plugin.findChildren<const QTimer *>();
    return std::any_of(timers.begin(), timers.end(), [](const QTimer *timer) {
        return timer->isActive() && timer->interval() == 0;
    });
}
