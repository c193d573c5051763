#pragma once

#include "db/dbmanager.h"
#include "support/logcapture.h"
#include "support/testdata.h"
#include "support/testserver.h"

/// What the product's server is to the plug-in: an information database, its manager, and the
/// customers' databases that it lists.
/// The destructor gives back the connections that the manager made for this thread.
class TestHost
{
public:
    /// Without an information database, the plug-in is in single-database mode.
    explicit TestHost(bool withInfoDatabase = true)
    {
        QSqlDatabase db = TestServer::addConnection("KVH.InfoDB", info.name());
        dbManager.setInfoDB(db);
        if (withInfoDatabase)
            dbManager.checkOpenDB(db);
    }
    ~TestHost()
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
    Q_DISABLE_COPY(TestHost)

    DBManager *manager() { return &dbManager; }
    const TestDatabase &infoDatabase() const { return info; }

    /// Lists `database` in the information database under each of the tokens.
    void addSchemas(const QStringList &tokens, const TestDatabase &database)
    {
        info.addSchemas(tokens, database.name());
        allTokens += tokens;
    }

private:
    const TestDatabase info{TestDatabase::Tables::Info};
    DBManager dbManager;
    QStringList allTokens;
};

/// Enables the daily report of a schema, due at the first tick. Without recipients, none is made.
inline void enableDailyReport(const TestDatabase &schema, const QString &recipients = QString())
{
    const QString sql = "REPLACE INTO vars VALUES ('autoReport.DailyAtten.enabled', '1'), "
                        "('autoReport.DailyAtten.emails', '%1')";
    schema.exec(sql.arg(recipients));
}

/// The same for both reports.
inline void enableBothReports(const TestDatabase &schema, const QString &recipients)
{
    enableDailyReport(schema, recipients);
    schema.exec("REPLACE INTO vars SELECT REPLACE(name, 'Daily', 'Monthly'), value FROM vars "
                "WHERE name LIKE 'autoReport.DailyAtten.%'");
}

/// Resets the schema to a state in which no report was made and no mail queued.
inline void makeDue(const TestDatabase &schema)
{
    schema.exec("DELETE FROM emails;\nDELETE FROM vars WHERE name LIKE '%lastGenerated'");
}

/// Adds active people with the uids 1 to `count`.
inline void addPeople(const TestDatabase &schema, int count)
{
    const QString sql = "INSERT INTO people (uid, pid, name, surname) SELECT seq, seq + 100, "
                        "'Ján', CONCAT('Priezvisko', seq) FROM seq_1_to_%1";
    schema.exec(sql.arg(count));
}

inline bool isScanning(const QObject &plugin)
{
    const auto timers = plugin.findChildren<const QTimer *>();
    return std::any_of(timers.begin(), timers.end(), [](const QTimer *timer) {
        return timer->isActive() && timer->interval() == 0;
    });
}
