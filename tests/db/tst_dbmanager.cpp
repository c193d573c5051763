#include "db/serverlist.h"

#include "support/foreignmanager.h"
#include "support/testhost.h"

#include <future>
#include <type_traits>

using namespace std::chrono_literals;

static_assert(sizeof(foreign::Manager) == sizeof(DBManager));
static_assert(alignof(foreign::Manager) == alignof(DBManager));
static_assert(!std::is_polymorphic_v<DBManager>);

class TestDBManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        log = std::make_unique<LogCapture>();
        host = std::make_unique<TestHost>(false);
        manager = host->manager();
    }

    void cleanup()
    {
        host.reset();
        log.reset();
    }

    void tokens()
    {
        QVERIFY(!manager->isInfoDB());
        for (const char *token : {"c", "a", "%1", "b", "off"})
            info().addSchemas({token}, QString("db_") + token);
        info().exec("UPDATE `schemas` SET status = 0 WHERE token = 'off'");
        for (const bool close : {false, true}) {
            manager->setCloseInfoDB(close);
            info().exec("UPDATE `schemas` SET recalc = IF(token = 'b', NULL, sid * 10)");

            QCOMPARE(manager->tokensCount(true), 4U);
            QVERIFY(manager->isInfoDB());
            QVERIFY(manager->getInfoDB().isOpen() != close);
            QCOMPARE(manager->tokensCount(false), 1U);
            QCOMPARE(manager->loadTokens(2, 1), QStringList({"a", "b"}));
            QCOMPARE(manager->loadTokens(2, 4), QStringList());
            QCOMPARE(manager->loadTokens4Recalculate(3), QStringList({"b", "c", "a"}));
            QVERIFY(manager->setRecalculated("b"));
            QCOMPARE(manager->loadTokens4Recalculate(1), QStringList("c"));
            QCOMPARE(manager->getTokenBySchemaName("db_%1"), QString("%1"));
            QCOMPARE(manager->getTokenBySchemaName("db_off"), QString());
            QVERIFY(manager->getInfoDB().isOpen() != close);
        }

        info().exec("DELETE FROM `schemas`");
        info().addSchemas({"never", "due", "stamped", "fresh"}, "x");
        QVERIFY(manager->setMaintenance("stamped"));
        // 898 rather than 900: time passes until the schemas are read.
        info().exec(
            "UPDATE `schemas` SET maintenance = UNIX_TIMESTAMP() - IF(token = 'due', 901, 898) "
            "WHERE token IN ('due', 'fresh')");
        QCOMPARE(manager->loadTokens4Maintenance(9), QStringList({"never", "due"}));
    }

    void schemeIsDecodedAndCached()
    {
        const QString password = "heslo ľšč";
        info().addSchemas({"one"}, "db1");
        info().exec("UPDATE `schemas` SET pass = TO_BASE64('" + password + "')");
        QCOMPARE(manager->getDbConnRecord("one").token, QString());
        QCOMPARE(manager->loadScheme("one").pass, password);
        const auto cached = manager->getDbConnRecord("one");
        QCOMPARE(QStringList({cached.name, cached.user, cached.pass, cached.token}),
                 QStringList({"db1", TestServer::user, password, "one"}));

        info().exec("UPDATE `schemas` SET status = 0");
        QCOMPARE(manager->loadScheme("one").name, QString());
        QCOMPARE(manager->getDbConnRecord("one").name, QString("db1"));

        // An unreadable table, and a server that does not exist.
        info().exec("DROP TABLE `schemas`");
        QCOMPARE(manager->loadScheme("one").name, QString("db1"));
        QSqlDatabase db = manager->getInfoDB();
        db.close();
        db.setDatabaseName("nowhere");
        QCOMPARE(manager->loadScheme("one").name, QString());
        QCOMPARE(manager->loadTokens(10, 0), QStringList());
        QVERIFY(!manager->isInfoDB());
    }

    void errorsAreLoggedOnce()
    {
        info().exec("DROP TABLE `schemas`");
        QCOMPARE(manager->tokensCount(true), 0U);
        QCOMPARE(manager->loadTokens(1, 0), QStringList());
        QCOMPARE(manager->loadTokens4Maintenance(1), QStringList());
        QCOMPARE(manager->loadTokens4Recalculate(1), QStringList());
        QVERIFY(!manager->setMaintenance("t"));
        QVERIFY(!manager->setRecalculated("t"));
        QCOMPARE(manager->getTokenBySchemaName("n"), QString());
        QCOMPARE(manager->loadScheme("t").name, QString());
        QStringList begins;
        for (const QString &line : log->texts())
            begins += line.section(" Table '", 0, 0);
        const QStringList expected{
            "DBManager::tokensCount() - ERROR:",
            "DBManager::loadTokens NOT load schemas from infoDB!\nERROR:",
            "DBManager:: NOT load schemas for maintenance from infoDB!\nERROR:",
            "DBManager:: NOT load schemas for recalculate from infoDB!\nERROR:",
            "DBManager:: cannot set maintenance for tokent!\nERROR:",
            "DBManager:: cannot set recalc of t!\nERROR:",
            "DBManager:: NOT load scheme from infoDB!\nERROR:",
            "DBManager:: NOT load scheme from infoDB!\nERROR:"};
        QCOMPARE(begins, expected);
    }

    void everyThreadHasItsOwnConnection()
    {
        const QString token = "%2";
        info().addSchemas({token}, info().name());
        const auto use = [this, &token] {
            QSqlDatabase db = manager->getDatabase(token);
            const QString name = db.connectionName();
            const bool open =
                db.isOpen() && manager->isDatabase(token) && manager->isConnection(token) &&
                manager->getDatabase(token).connectionName() == name &&
                db.connectOptions() == QString("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1");
            db.close();
            db = QSqlDatabase();
            removeUnused(name);
            return open && !manager->isConnection(token) ? name : QString();
        };
        const QString otherName = std::async(std::launch::async, use).get();
        const QString name = use();
        QVERIFY(name.startsWith("0x") && name.endsWith("_dbc_%2"));
        QVERIFY(otherName.endsWith("_dbc_%2") && name != otherName);
    }

    void failedConnectionIsTriedAgain()
    {
        const QString token = "late";
        const QString databaseName = info().name() + "_late";
        info().addSchemas({token}, databaseName);
        QVERIFY(!manager->getDatabase(token).isValid());
        QVERIFY(manager->isDatabase(token) && manager->isConnection(token));
        const QString name = manager->getConnectionNameFromToken(token);

        info().exec("CREATE DATABASE " + databaseName);
        QVERIFY(manager->getDatabase(token).isOpen());
        info().exec("DROP DATABASE " + databaseName);
        removeUnused(name);
        QCOMPARE(log->texts().last(),
                 "DBManager::removeUnusedConnections() - can't remove active connection " + name);
        manager->getDatabase(token).close();
        manager->removeUnusedConnections();
        QVERIFY2(manager->isDatabase(token), "a refused name is not queued again");
        removeUnused(name);
        QVERIFY(!manager->isDatabase(token));
    }

    void servers_data()
    {
        addRow("one", "node1", "node1:3306");
        addRow("none", "", ":3306");
        addRow("several", "node1:1, node2,10.0.0.3:65535", "node1:1,node2:3306,10.0.0.3:65535");
        addRow("IPv6", "::1,[::1],[fe80::2]:3307", "[::1]:3306,[::1]:3306,[fe80::2]:3307");
        addRow("no number", "node1:,node2:x", "node1:0,node2:0");
    }

    void servers()
    {
        const auto [hostName, servers] = fetch<QString, QString>();
        QCOMPARE(serverText(hostName, 3306), servers);
    }

    /// The members of a foreign host's manager that no scan of the plug-in touches.
    void objectOfAForeignHost()
    {
        foreign::Manager image;
        auto *shared = reinterpret_cast<DBManager *>(&image);
        shared->setInfoDB(manager->getInfoDB());
        shared->setZasDB(info().database());
        shared->setCloseInfoDB(true);
        shared->setUnusedConnectionsEnabled(false);
        QCOMPARE(image.info.databaseName(), info().name());
        QCOMPARE(QStringList({image.infoConnection, image.productConnection}),
                 QStringList({"KVH.InfoDB", info().database().connectionName()}));
        QVERIFY(image.product.isValid() && image.closeInfoAfterUse && !image.poolEnabled);

        // The host and this class lock the same mutex.
        image.mutex.lock();
        const auto answer = std::async(std::launch::async, [&] { return shared->isInfoDB(); });
        const bool waited = answer.wait_for(100ms) == std::future_status::timeout;
        image.mutex.unlock();
        QVERIFY(waited);
    }

private:
    const TestDatabase &info() const { return host->infoDatabase(); }
    void removeUnused(const QString &name) const
    {
        manager->addUnusedConnection(name);
        manager->removeUnusedConnections();
    }

    std::unique_ptr<LogCapture> log;
    std::unique_ptr<TestHost> host;
    DBManager *manager = nullptr;
};

QTEST_GUILESS_MAIN(TestDBManager)
#include "tst_dbmanager.moc"
