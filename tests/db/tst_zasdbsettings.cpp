#include "db/zasdbsettings.h"
#include "support/connectionguard.h"
#include "support/logcapture.h"
#include "support/testserver.h"

#include <QTest>

#include <memory>

class TestZasDbSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void storesAndReplaces();
    void readsByListAndPrefix();
    void oneBadEntryStopsNoOther();
    void deletesExactlyOrByPrefix();
    void failuresAreLogged_data();
    void failuresAreLogged();

private:
    using Values = QMap<QString, QVariant>;

    std::unique_ptr<LogCapture> log;
    std::unique_ptr<TestDatabase> schema;
    ZasDbSettings settings;
};

static const QString daily = "autoReport.DailyAtten.enabled";
static const QString monthly = "autoReport.MonthlyAtten.enabled";

void TestZasDbSettings::init()
{
    log = std::make_unique<LogCapture>();
    schema = std::make_unique<TestDatabase>(TestDatabase::Tables::Schema);
    settings.setDB(schema->database());
}

void TestZasDbSettings::cleanup()
{
    settings.setDB(QSqlDatabase());
    schema.reset();
    checkConnections(*log);
    log.reset();
}

void TestZasDbSettings::storesAndReplaces()
{
    QCOMPARE(settings.variableGet(daily, 5), QVariant(5));
    QVERIFY(settings.variableSet(daily, "it's 100 % Ľ"));
    QCOMPARE(settings.variableGet(daily, 5).toString(), QString("it's 100 % Ľ"));
    QVERIFY(settings.variableSet(daily, 1700000000LL));
    QCOMPARE(settings.variableGet(daily, 5).toLongLong(), 1700000000LL);
    QVERIFY(settings.variableSet(daily, QVariant(QVariant::String)));
    QVERIFY2(settings.variableGet(daily, 5).isNull(), "a stored NULL is not a missing key");
    QCOMPARE(schema->value("SELECT COUNT(*) FROM vars").toInt(), 1);
    QCOMPARE(log->lines().size(), 0);
}

void TestZasDbSettings::readsByListAndPrefix()
{
    QVERIFY(settings.variableSetMultiple({{daily, 1}, {monthly, 0}, {"x", 2}}));
    const QString missing = "missing";
    QCOMPARE(settings.variableGetMultiple({daily, missing, "x"}).keys(), QStringList({daily, "x"}));
    QCOMPARE(settings.variableGetMultiple("autoReport.DailyAtten.").keys(), QStringList(daily));
    QCOMPARE(settings.variableGetMultiple("auto_eport.").keys(), QStringList({daily, monthly}));
    QCOMPARE(settings.variableGetMultiple("auto").value(daily).toInt(), 1);

    settings.setDB(QSqlDatabase()); // no statement: this one would fail
    QCOMPARE(settings.variableGetMultiple(QStringList()), Values());
    QCOMPARE(log->lines().size(), 0);
}

void TestZasDbSettings::oneBadEntryStopsNoOther()
{
    const QString tooLong(200, 'b');
    QVERIFY(!settings.variableSetMultiple({{"a", 1}, {tooLong, 2}, {"c", 3}}));
    QCOMPARE(schema->value("SELECT GROUP_CONCAT(name) FROM vars").toString(), QString("a,c"));
    QCOMPARE(log->texts(QtCriticalMsg).size(), 1);
    QVERIFY(log->texts(QtCriticalMsg).at(0).startsWith("variableSet ERROR: "));
    QVERIFY(settings.variableSetMultiple(Values()));
}

void TestZasDbSettings::deletesExactlyOrByPrefix()
{
    QVERIFY(settings.variableSetMultiple({{daily, 1}, {monthly, 0}, {"x", 2}}));
    QVERIFY(!settings.variableDel("autoReport.", false));
    QVERIFY(settings.variableDel("x", false));
    QVERIFY(settings.variableDel("autoReport.", true));
    QCOMPARE(schema->value("SELECT COUNT(*) FROM vars").toInt(), 0);
    QVERIFY(!settings.variableDel("autoReport.", true));
    QCOMPARE(log->lines().size(), 0);
}

void TestZasDbSettings::failuresAreLogged_data()
{
    QTest::addColumn<bool>("valid");
    QTest::newRow("no table") << true;
    QTest::newRow("no connection; the default one is not used instead") << false;
}

void TestZasDbSettings::failuresAreLogged()
{
    QFETCH(bool, valid);
    QSqlDatabase usual =
        TestServer::addConnection(QLatin1String(QSqlDatabase::defaultConnection), schema->name());
    QVERIFY(usual.open());
    if (valid)
        schema->exec("DROP TABLE vars");
    else
        settings.setDB(QSqlDatabase());

    const QString name = "name";
    QCOMPARE(settings.variableGet(name, 5), QVariant(5));
    QCOMPARE(settings.variableGetMultiple(QStringList(name)), Values());
    QCOMPARE(settings.variableGetMultiple(name), Values());
    QVERIFY(!settings.variableSet(name, 1));
    QVERIFY(!settings.variableSetMultiple({{name, 1}}));
    QVERIFY(!settings.variableDel(name, true));
    QVERIFY(log->begin(QtCriticalMsg,
                       {"ZasDbSettings::variableGet - SQL ERROR: ",
                        "ZasDbSettings::variableGetMultiple - SQL ERROR: ",
                        "ZasDbSettings::variableGetMultiple - SQL ERROR: ", "variableSet ERROR: ",
                        "variableSet ERROR: ", "ZasDbSettings::variableDel - SQL ERROR: "}));

    usual.setDatabaseName("nowhere");
    settings.setDB(usual);
    settings.closeDB();
    QVERIFY(!settings.openDB());
    QVERIFY(log->texts(QtCriticalMsg).last().startsWith("ZasDbSettings Database Error: "));
    settings.setDB(QSqlDatabase());
    usual = QSqlDatabase();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

QTEST_GUILESS_MAIN(TestZasDbSettings)
#include "tst_zasdbsettings.moc"
