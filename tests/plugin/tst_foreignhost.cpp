#include "support/foreignmanager.h"
#include "support/reportbench.h"

#include <array>

namespace foreign
{

class Server
{
public:
    virtual ~Server() = default;
    virtual QString getVersion() const = 0;
    virtual bool start() = 0;
    virtual void stop() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    virtual void setDebugLevel(unsigned char level) = 0;
    virtual void setDatabase(const QSqlDatabase &database) = 0;
};

class TakesManager
{
public:
    virtual void setDBManager(Manager *manager) = 0;

protected:
    ~TakesManager() = default;
};

class Version
{
public:
    virtual ~Version() = default;
    virtual QMap<QString, QString> getVerInfo() const = 0;
};

} // namespace foreign

Q_DECLARE_INTERFACE(foreign::Server, "com.velmora.kvh.ServerInterface")
Q_DECLARE_INTERFACE(foreign::TakesManager, "com.velmora.kvh.DatabaseManagerInterface")
Q_DECLARE_INTERFACE(foreign::Version, "com.velmora.VerInfoInterface")

/// The built module in a host that shares no line of code with it.
class TestForeignHost : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    /// Loads, scans, stops and unloads, each time on the same manager.
    void loadsAgain()
    {
        struct {
            foreign::Manager manager;
            std::array<quint64, 8> behind = {1, 2, 3, 4, 5, 6, 7, 8};
        } host;
        const auto behind = host.behind;
        foreign::Manager &manager = host.manager;
        manager.infoConnection = "KVH.InfoDB";
        manager.info = TestServer::addConnection(manager.infoConnection, info->name());
        manager.infoOpen = manager.info.open();
        QVERIFY(manager.infoOpen);
        for (int round = 1; round <= 3; ++round) {
            serve(manager, round);
            if (QTest::currentTestFailed())
                break;
            QCOMPARE(bench->mails(), round);
            // The host can read what the plug-in left in the manager, without the module.
            QCOMPARE(manager.schemes.size(), 2);
            const foreign::Scheme scheme = manager.schemes.value("firma");
            QCOMPARE(QStringList({scheme.name, scheme.user, scheme.pass, scheme.token}),
                     QStringList(
                         {bench->schema.name(), TestServer::user, TestServer::password, "firma"}));
            QCOMPARE(manager.connections.size(), 2);
            for (const QString &connection : qAsConst(manager.connections))
                QVERIFY(QSqlDatabase::contains(connection));
            QVERIFY(manager.unusedConnections.isEmpty() && manager.second.isEmpty());
            QVERIFY(manager.infoOpen && manager.poolEnabled && !manager.closeInfoAfterUse);
            QVERIFY(manager.mutex.tryLock());
            manager.mutex.unlock();
            QVERIFY(host.behind == behind);
        }
        for (const QString &connection : qAsConst(manager.connections))
            QSqlDatabase::removeDatabase(connection);
        manager.info = QSqlDatabase();
        QSqlDatabase::removeDatabase(manager.infoConnection);
    }

private:
    void prepare() override
    {
        info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
        info->addSchemas({"firma"}, bench->schema.name());
        info->addSchemas({"missing"}, "no_such_database");
        bench->schema.exec("INSERT INTO people (uid, pid, name, surname) VALUES (1, 1, 'J', 'M')");
        bench->set("autoReport.DailyAtten.enabled", "1");
        bench->set("autoReport.DailyAtten.emails", "a@firma.sk");
    }

    void serve(foreign::Manager &manager, int round)
    {
        bench->schema.exec("DELETE FROM vars WHERE name LIKE '%lastGenerated'");
        QPluginLoader loader(AUTOREPORT_MODULE);
        QVERIFY(!loader.isLoaded());
        QCOMPARE(loader.metaData()["IID"].toString(), QString("com.velmora.kvh.ServerInterface"));
        QCOMPARE(loader.metaData()["MetaData"].toObject(), QJsonObject());
        QObject *plugin = loader.instance();
        QVERIFY2(plugin, qPrintable(loader.errorString()));
        auto information = qobject_cast<foreign::Version *>(plugin)->getVerInfo();
        QCOMPARE(information.take("BUILD").size(), 10);
        QCOMPARE(information,
                 (QMap<QString, QString>{
                     {"VER", "1.2.3"}, {"orvixType", "PLG.AR"}, {"ZASDB", "20.03.17"}}));
        auto *server = qobject_cast<foreign::Server *>(plugin);
        QCOMPARE(server->getVersion(), QString("1.2.3"));
        QVERIFY(!server->start());
        QVERIFY(bench->log.gets("!!! AutoReport: Database manager not initialized !!!", round));
        qobject_cast<foreign::TakesManager *>(plugin)->setDBManager(&manager);
        server->setDebugLevel(1);
        QVERIFY(server->start()); // the scan comes a second later
        QVERIFY(bench->log.gets("active workers: 1 / 2 schemas checked (total schemas: 2)", round));
        QTRY_COMPARE_WITH_TIMEOUT(bench->mails(), round, patienceMs);
        server->pause();
        QVERIFY(bench->log.gets("AutoReportWorker - pause()", round));
        server->resume();
        QVERIFY(bench->log.gets("AutoReportWorker - resume()", round));
        server->stop();
        QCOMPARE(bench->log.countContaining("AutoReportWorker - stop()"), round);
        QVERIFY2(loader.unload(), qPrintable(loader.errorString())); // deletes the plug-in, too
    }

    std::unique_ptr<TestDatabase> info;
};

QTEST_GUILESS_MAIN(TestForeignHost)
#include "tst_foreignhost.moc"
