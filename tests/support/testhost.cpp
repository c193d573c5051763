#include "support/testhost.h"

#include <QDate>
#include <QTimer>

#include <algorithm>

namespace
{

QString quoted(const QString &text)
{
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

} // namespace

TestHost::TestHost(bool withInfoDatabase)
    : info(TestDatabase::Tables::Info)
{
    QSqlDatabase db = TestServer::addConnection(QStringLiteral("KVH.InfoDB"), info.name());
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
    QSqlDatabase::removeDatabase(QStringLiteral("KVH.InfoDB"));
}

void TestHost::addSchema(const QString &token, const TestDatabase &database)
{
    addSchemas({token}, database);
}

void TestHost::addSchemas(const QStringList &tokens, const TestDatabase &database)
{
    const QString account =
        QStringLiteral(", '%1', '%2', '%3', 1)")
            .arg(database.name(), TestServer::user(),
                 QString::fromLatin1(TestServer::password().toUtf8().toBase64()));
    QStringList rows;
    for (const QString &token : tokens)
        rows.append(QLatin1Char('(') + quoted(token) + account);
    info.exec(QStringLiteral("INSERT INTO `schemas` (token, name, user, pass, status) VALUES ") +
              rows.join(QLatin1Char(',')));
    allTokens += tokens;
}

void enableDailyReport(const TestDatabase &schema, const QString &recipients)
{
    schema.exec(QStringLiteral("REPLACE INTO vars (name, value) VALUES "
                               "('autoReport.DailyAtten.enabled', '1'), "
                               "('autoReport.DailyAtten.emails', '%1')")
                    .arg(recipients));
}

void addPeople(const TestDatabase &schema, int count)
{
    schema.exec(QStringLiteral("INSERT INTO people (uid, pid, name, surname) SELECT seq, seq + "
                               "100, 'Ján', CONCAT('Priezvisko', seq) FROM seq_1_to_%1")
                    .arg(count));
}

bool isScanning(const QObject &plugin)
{
    const auto timers = plugin.findChildren<const QTimer *>();
    return std::any_of(timers.begin(), timers.end(), [](const QTimer *timer) {
        return timer->isActive() && timer->interval() == 0;
    });
}

int peopleForSeconds()
{
    constexpr int rows = 21000;
    return rows / QDate::currentDate().day();
}
