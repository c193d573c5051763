#include "plugin/buildstamp.h"
#include "plugin/databasemanagerinterface.h"
#include "plugin/serverinterface.h"
#include "plugin/verinfointerface.h"

#include <QJsonObject>
#include <QPluginLoader>
#include <QTest>

/// The loadable module as a host sees it: through Qt's plug-in loader alone.
class TestModule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void interfaces()
    {
        QCOMPARE(loader.metaData().value("IID").toString(),
                 QString("com.velmora.kvh.ServerInterface"));
        QCOMPARE(loader.metaData().value("MetaData").toObject(), QJsonObject());
        QObject *plugin = loader.instance();
        QVERIFY2(plugin, qPrintable(loader.errorString()));
        for (const char *name :
             {"AutoReport", "ServerInterface", "com.velmora.kvh.ServerInterface",
              "DatabaseManagerInterface", "com.velmora.kvh.DatabaseManagerInterface",
              "VerInfoInterface", "com.velmora.VerInfoInterface"})
            QVERIFY2(plugin->qt_metacast(name), name);
        QVERIFY(qobject_cast<DatabaseManagerInterface *>(plugin));

        auto *server = qobject_cast<ServerInterface *>(plugin);
        QVERIFY(server);
        QCOMPARE(server->getVersion(), QString("1.2.3"));
        QTest::ignoreMessage(QtInfoMsg, "AutoReport - START");
        QTest::ignoreMessage(QtCriticalMsg, "!!! AutoReport: Database manager not initialized !!!");
        QVERIFY(!server->start());
        delete plugin;
    }

    void versionInformation()
    {
        const QScopedPointer<QObject> plugin(loader.instance());
        const auto info = qobject_cast<VerInfoInterface *>(plugin.data())->getVerInfo();
        QCOMPARE(QStringList(info.keys()).join(' '), QString("BUILD VER ZASDB orvixType"));
        QCOMPARE(QStringList({info.value("VER"), info.value("orvixType"), info.value("ZASDB")}),
                 QStringList({"1.2.3", "PLG.AR", "20.03.17"}));
        QCOMPARE(info.value("BUILD").size(), 10);
        QCOMPARE(buildStamp("Mar  5 2024", "23:05:00"), QString("2403052305"));
    }

private:
    QPluginLoader loader{AUTOREPORT_MODULE};
};

QTEST_GUILESS_MAIN(TestModule)
#include "tst_module.moc"
