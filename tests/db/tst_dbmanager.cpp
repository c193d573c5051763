#include "db/dbmanager.h"
#include "support/connectionguard.h"
#include "support/logcapture.h"
#include "support/testserver.h"

#include <QTest>
#include <QThread>

#include <memory>

class TestDBManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void infoFlagFollowsTheAttemptsToOpen();
    void tokens_data();
    void tokens();
    void maintenanceIsDueAfter900Seconds();
    void failuresAreEmptyAndLogged();
    void schemeIsDecodedAndCached();
    void noWayToASchema_data();
    void noWayToASchema();
    void everyThreadHasItsOwnConnection();
    void failedConnectionIsTriedAgain();
    void mastersStayOutOfThePool();
    void poolRemovesClosedConnections();
    void emptyManagerIsQuiet();

private:
    void addSchema(const QString &token, const QString &databaseName, int status = 1);
    QString schemeOf(const QString &token);

    std::unique_ptr<LogCapture> log;
    std::unique_ptr<TestDatabase> info;
    std::unique_ptr<DBManager> manager;
};

void TestDBManager::init()
{
    log = std::make_unique<LogCapture>();
    info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
    manager = std::make_unique<DBManager>();
    manager->setInfoDB(TestServer::addConnection("KVH.InfoDB", info->name()));
}

void TestDBManager::cleanup()
{
    manager.reset();
    QSqlDatabase::removeDatabase("KVH.InfoDB");
    info.reset();
    checkConnections(*log);
    log.reset();
}

void TestDBManager::addSchema(const QString &token, const QString &databaseName, int status)
{
    info->exec(QString("INSERT INTO `schemas` (token, name, user, pass, status) "
                       "VALUES ('%1', '%2', '%3', '%4', %5)")
                   .arg(token, databaseName, TestServer::user(),
                        QString(TestServer::password().toUtf8().toBase64()),
                        QString::number(status)));
}

void TestDBManager::infoFlagFollowsTheAttemptsToOpen()
{
    QSqlDatabase db = manager->getInfoDB();
    QVERIFY(!manager->isInfoDB());
    QVERIFY(manager->checkOpenDB(db));
    QVERIFY(manager->isInfoDB());

    QSqlDatabase other = TestServer::addConnection("other", info->name());
    other.setPassword("wrong");
    QVERIFY(!manager->checkOpenDB(other));
    QVERIFY2(manager->isInfoDB(), "another connection's failure does not count");
    other = QSqlDatabase();
    QSqlDatabase::removeDatabase("other");

    db.close();
    db.setDatabaseName("nowhere");
    QCOMPARE(manager->loadTokens(10, 0), QStringList());
    QVERIFY(!manager->isInfoDB());
    QCOMPARE(log->countContaining("DBManager:: database nowhere can NOT open! ERROR: "), 1);
}

void TestDBManager::tokens_data()
{
    QTest::addColumn<bool>("close");
    QTest::newRow("the information database stays open") << false;
    QTest::newRow("closed after each use") << true;
}

void TestDBManager::tokens()
{
    QFETCH(bool, close);
    manager->setCloseInfoDB(close);
    const auto closedAsAsked = [&] {
        return manager->getInfoDB().isOpen() != close;
    };
    for (const char *token : {"c", "a", "%1", "b"})
        addSchema(token, QString("db_") + token);
    addSchema("off", "db_off", 0);
    info->exec("UPDATE `schemas` SET recalc = sid * 10 WHERE token != 'b'");

    QCOMPARE(manager->tokensCount(true), 4U);
    QVERIFY(closedAsAsked());
    QCOMPARE(manager->tokensCount(false), 1U);
    QCOMPARE(manager->loadTokens(2, 1).join(' '), QString("a b"));
    QCOMPARE(manager->loadTokens(2, 4), QStringList());
    QCOMPARE(manager->loadTokens4Recalculate(3).join(' '), QString("b c a"));
    QVERIFY(manager->setRecalculated("b"));
    QCOMPARE(manager->loadTokens4Recalculate(1), QStringList("c"));
    QVERIFY(!manager->setRecalculated("off"));
    QCOMPARE(manager->getTokenBySchemaName("db_%1"), QString("%1"));
    QCOMPARE(manager->getTokenBySchemaName("db_off"), QString());
    QVERIFY(closedAsAsked());
}

void TestDBManager::maintenanceIsDueAfter900Seconds()
{
    for (const char *token : {"never", "due", "stamped", "fresh"})
        addSchema(token, "x");
    const auto due = [this] {
        return manager->loadTokens4Maintenance(9).join(' ');
    };

    QVERIFY(manager->setMaintenance("stamped"));
    // 898 leaves room: the clock goes on until the schemas are read.
    info->exec("UPDATE `schemas` SET maintenance = UNIX_TIMESTAMP() - IF(token = 'due', 901, 898) "
               "WHERE token IN ('due', 'fresh')");
    QCOMPARE(due(), QString("never due"));
    QCOMPARE(manager->loadTokens4Maintenance(1), QStringList("never"));
}

void TestDBManager::failuresAreEmptyAndLogged()
{
    const QString token = "t'"; // breaks a statement by itself
    QVERIFY(!manager->setMaintenance(token));
    QVERIFY(!manager->setRecalculated(token));
    info->exec("DROP TABLE `schemas`");
    QCOMPARE(manager->tokensCount(true), 0U);
    QCOMPARE(manager->loadTokens(1, 0), QStringList());
    QCOMPARE(manager->loadTokens4Maintenance(1), QStringList());
    QCOMPARE(manager->loadTokens4Recalculate(1), QStringList());
    QCOMPARE(manager->getTokenBySchemaName(token), QString());

    QVERIFY(log->begin(
        QtCriticalMsg,
        {"DBManager:: cannot set maintenance for tokent'!\nERROR: ",
         "DBManager:: cannot set recalc of t'!\nERROR: ", "DBManager::tokensCount() - ERROR: ",
         "DBManager::loadTokens NOT load schemas from infoDB!\nERROR: ",
         "DBManager:: NOT load schemas for maintenance from infoDB!\nERROR: ",
         "DBManager:: NOT load schemas for recalculate from infoDB!\nERROR: ",
         "DBManager:: NOT load scheme from infoDB!\nERROR: "}));
    QVERIFY(log->lines().last().text.contains("QMYSQL"));
}

QString TestDBManager::schemeOf(const QString &token)
{
    const DBSchemeRecord scheme = manager->getDbConnRecord(token);
    return QStringList{scheme.name, scheme.user, scheme.pass, scheme.token}.join('|');
}

void TestDBManager::schemeIsDecodedAndCached()
{
    addSchema("one", "db1");
    info->exec(QString("UPDATE `schemas` SET pass = '%1'")
                   .arg(QString(QByteArray("heslo ľšč").toBase64())));
    QCOMPARE(schemeOf("one"), QString("|||"));
    QCOMPARE(manager->loadScheme("one").pass, QString("heslo ľšč"));
    const QString full = "db1|autoreport|heslo ľšč|one";
    QCOMPARE(schemeOf("one"), full);

    info->exec("UPDATE `schemas` SET status = 0");
    QCOMPARE(manager->loadScheme("one").name, QString());
    QCOMPARE(schemeOf("one"), full);
    info->exec("DROP TABLE `schemas`");
    QCOMPARE(manager->loadScheme("one").name, QString("db1"));
}

void TestDBManager::noWayToASchema_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("unknown") << "DELETE FROM `schemas`";
    QTest::newRow("inactive") << "UPDATE `schemas` SET status = 0";
    QTest::newRow("no name") << "UPDATE `schemas` SET name = ''";
    QTest::newRow("no user") << "UPDATE `schemas` SET user = ''";
    QTest::newRow("no password") << "UPDATE `schemas` SET pass = ''";
}

void TestDBManager::noWayToASchema()
{
    QFETCH(QString, change);
    addSchema("one", info->name());
    info->exec(change);
    QVERIFY(!manager->getDatabase("one").isValid());
    QVERIFY(!manager->isConnection("one"));
    QVERIFY(!manager->isDatabase("one"));

    QSqlDatabase usual =
        TestServer::addConnection(QLatin1String(QSqlDatabase::defaultConnection), info->name());
    QCOMPARE(manager->getDatabase("one").connectionName(), usual.connectionName());
    QVERIFY(usual.isOpen());
    usual = QSqlDatabase();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

void TestDBManager::everyThreadHasItsOwnConnection()
{
    const QString token = "%2";
    addSchema(token, info->name());
    const auto use = [this, &token] {
        QSqlDatabase db = manager->getDatabase(token);
        const QString name = db.connectionName();
        const bool open =
            db.isOpen() && manager->isDatabase(token) && manager->isConnection(token) &&
            manager->getDatabase(token).connectionName() == name &&
            name == manager->getConnectionNameFromToken(token) &&
            db.connectOptions() == QString("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1");
        db.close();
        db = QSqlDatabase();
        manager->addUnusedConnection(name);
        manager->removeUnusedConnections();
        return open && !manager->isConnection(token) ? name : QString();
    };

    QString otherName;
    const std::unique_ptr<QThread> thread(QThread::create([&] { otherName = use(); }));
    thread->start();
    QVERIFY(thread->wait());
    const QString name = use();
    QVERIFY(name.startsWith("0x") && name.endsWith("_dbc_%2"));
    QVERIFY(otherName.endsWith("_dbc_%2"));
    QVERIFY(name != otherName);
}

void TestDBManager::failedConnectionIsTriedAgain()
{
    const QString token = "late";
    const QString databaseName = info->name() + "_late";
    addSchema(token, databaseName);
    QVERIFY(!manager->getDatabase(token).isValid());
    QVERIFY(manager->isDatabase(token) && manager->isConnection(token));
    const QString name = manager->getConnectionNameFromToken(token);
    QVERIFY(log->begin(QtWarningMsg, {"DBManager:: database " + name + " (token: late ) NOT OPEN!",
                                      "SQL ERROR: "}));

    info->exec(QString("CREATE DATABASE %1").arg(databaseName));
    QVERIFY(manager->getDatabase(token).isOpen());
    info->exec(QString("DROP DATABASE %1").arg(databaseName));
    manager->addUnusedConnection(name);
    manager->removeUnusedConnections();
    QCOMPARE(log->lines().last().text,
             "DBManager::removeUnusedConnections() - can't remove active connection " + name);
    QVERIFY(manager->isDatabase(token));
    manager->getDatabase(token).close();
    manager->removeUnusedConnections();
    QVERIFY2(manager->isDatabase(token), "a refused name is not queued again");
    manager->addUnusedConnection(name);
    manager->removeUnusedConnections();
    QVERIFY(!manager->isDatabase(token));
}

void TestDBManager::mastersStayOutOfThePool()
{
    QSqlDatabase zas = TestServer::addConnection("Product", info->name());
    manager->setZasDB(zas);
    QCOMPARE(manager->getDatabase(QString()).connectionName(), QString("Product"));
    QCOMPARE(manager->getZasDB().databaseName(), info->name());

    for (const QString name : {"Product", "KVH.InfoDB", "KVH.ZASDB", "qt_sql_default_connection"}) {
        manager->addUnusedConnection(name);
        QCOMPARE(log->lines().last().text, "DBManager::addUnusedConnection() Master connection " +
                                               name + " cannot add to unused connections!");
    }
    manager->removeUnusedConnections();
    QCOMPARE(log->lines().size(), 4);

    // A name that became a master's after it was offered.
    manager->setZasDB(QSqlDatabase());
    manager->addUnusedConnection("Product");
    manager->setZasDB(zas);
    manager->removeUnusedConnections();
    QCOMPARE(log->lines().last().text,
             "DBManager::removeUnusedConnections() - cannot remove master connection Product");
    QVERIFY(QSqlDatabase::contains("Product"));
    manager->setZasDB(QSqlDatabase());
    zas = QSqlDatabase();
    QSqlDatabase::removeDatabase("Product");
}

void TestDBManager::poolRemovesClosedConnections()
{
    const auto registered = [] {
        return QSqlDatabase::contains("old");
    };
    TestServer::addConnection("old", info->name());
    manager->addUnusedConnection("old");
    manager->setUnusedConnectionsEnabled(false);
    manager->addUnusedConnection("old");
    manager->removeUnusedConnections();
    manager->setUnusedConnectionsEnabled(true);
    manager->removeUnusedConnections();
    QVERIFY2(registered(), "switching off forgets what was offered");

    manager->debugLevel = 1;
    manager->addUnusedConnection(QString());
    manager->addUnusedConnection("old");
    manager->addUnusedConnection("old");
    manager->removeUnusedConnections();
    QVERIFY(!registered());
    const QString add = "DBManager::addUnusedConnection(%1)";
    const QString remove = "DBManager::removeUnusedConnections() - ";
    QCOMPARE(log->texts(QtDebugMsg),
             QStringList({add.arg(QString()), add.arg("old"), add.arg("old"),
                          remove + "master connections:  KVH.InfoDB "
                                   "qt_sql_default_connection",
                          remove + "removing: old", remove + "removing: old"}));
}

void TestDBManager::emptyManagerIsQuiet()
{
    DBManager empty;
    QCOMPARE(empty.tokensCount(true), 0U);
    QVERIFY(!empty.isInfoDB());
    QVERIFY(!empty.getDatabase(QString()).isValid());
    QCOMPARE(log->lines().size(), 0);
    QVERIFY(!empty.getDatabase("one").isValid());
    QCOMPARE(log->lines().size(), 1); // that the information database cannot be opened
}

QTEST_GUILESS_MAIN(TestDBManager)
#include "tst_dbmanager.moc"
