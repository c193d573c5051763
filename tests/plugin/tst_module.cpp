#include "plugin/databasemanagerinterface.h"
#include "plugin/serverinterface.h"
#include "plugin/verinfointerface.h"

#include "plugin/buildstamp.h"

#include <QJsonObject>
#include <QPluginLoader>
#include <QTest>

/// The loadable module as a host sees it: through Qt's plug-in loader alone.
class TestModule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaData();
    void interfaces();
    void versionInformation();
    void buildStampOfDates_data();
    void buildStampOfDates();
};

void TestModule::metaData()
{
    QPluginLoader loader(QStringLiteral(AUTOREPORT_MODULE));
    const QJsonObject data = loader.metaData();
    QCOMPARE(data.value(QLatin1String("IID")).toString(),
             QStringLiteral("com.velmora.kvh.ServerInterface"));
    QCOMPARE(data.value(QLatin1String("className")).toString(), QStringLiteral("AutoReport"));
    QCOMPARE(data.value(QLatin1String("MetaData")).toObject(), QJsonObject());
    QCOMPARE(data.value(QLatin1String("version")).toInt(),
             QT_VERSION & ~0xff); // Qt leaves the patch level out
}

void TestModule::interfaces()
{
    QPluginLoader loader(QStringLiteral(AUTOREPORT_MODULE));
    QObject *plugin = loader.instance();
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    QCOMPARE(QPluginLoader(loader.fileName()).instance(), plugin);
    for (const char *name : {"AutoReport", "ServerInterface", "com.velmora.kvh.ServerInterface",
                             "DatabaseManagerInterface", "com.velmora.kvh.DatabaseManagerInterface",
                             "VerInfoInterface", "com.velmora.VerInfoInterface"})
        QVERIFY2(plugin->qt_metacast(name), name);
    QVERIFY(qobject_cast<DatabaseManagerInterface *>(plugin));

    auto *server = qobject_cast<ServerInterface *>(plugin);
    QVERIFY(server);
    QCOMPARE(server->getVersion(), QStringLiteral("1.2.3"));
    QTest::ignoreMessage(QtInfoMsg, "AutoReport - START");
    QTest::ignoreMessage(QtCriticalMsg, "!!! AutoReport: Database manager not initialized !!!");
    QVERIFY(!server->start());

    // A host that deletes the object and asks again gets a new one.
    delete plugin;
    plugin = loader.instance();
    QVERIFY(plugin);
    delete plugin;
}

void TestModule::versionInformation()
{
    QPluginLoader loader(QStringLiteral(AUTOREPORT_MODULE));
    QScopedPointer<QObject> plugin(loader.instance());
    const auto info = qobject_cast<VerInfoInterface *>(plugin.data())->getVerInfo();
    QCOMPARE(info.keys().join(QLatin1Char(' ')), QStringLiteral("BUILD VER ZASDB orvixType"));
    QCOMPARE(info.value(QStringLiteral("VER")), QStringLiteral("1.2.3"));
    QCOMPARE(info.value(QStringLiteral("orvixType")), QStringLiteral("PLG.AR"));
    QCOMPARE(info.value(QStringLiteral("ZASDB")), QStringLiteral("20.03.17"));
    QCOMPARE(info.value(QStringLiteral("BUILD")).size(), 10);
}

void TestModule::buildStampOfDates_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("stamp");
    const auto row = [](const char *name, const char *date, const char *time, const char *stamp) {
        QTest::newRow(name) << QString::fromLatin1(date) << QString::fromLatin1(time)
                            << QString::fromLatin1(stamp);
    };
    row("morning", "Aug 18 2026", "09:53:27", "2608180953");
    row("afternoon, padded day", "Mar  5 2024", "23:05:00", "2403052305");
    row("unreadable date", "?? ?? ????", "09:53:27", "");
    row("unreadable time", "Aug 18 2026", "??:??:??", "");
}

void TestModule::buildStampOfDates()
{
    QFETCH(QString, date);
    QFETCH(QString, time);
    QTEST(buildStamp(date, time), "stamp");
}

QTEST_GUILESS_MAIN(TestModule)
#include "tst_module.moc"
