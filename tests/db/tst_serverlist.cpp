#include "db/serverlist.h"
#include "worker/autoreportworker.h"

#include "support/relay.h"
#include "support/reportbench.h"

/// Connections that may lead to one of several servers.
class TestServerList : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void servers_data()
    {
        addColumns<QString, QString>("hostName", "servers");
        addRow("one", QString("node1"), QString("node1 3306"));
        addRow("none", QString(), QString(" 3306"));
        addRow("one with a port", QString("node1:3307"), QString("node1 3307"));
        addRow("several", QString("node1:1, node2,10.0.0.3:65535"),
               QString("node1 1|node2 3306|10.0.0.3 65535"));
        addRow("IPv6", QString("::1,[::1],[fe80::2]:3307"),
               QString("::1 3306|::1 3306|fe80::2 3307"));
        addRow("no number", QString("node1:,node2:x"), QString("node1 0|node2 0"));
    }

    void servers()
    {
        QFETCH(QString, hostName);
        QStringList found;
        for (const ServerAddress &server : serversOf(hostName, 3306))
            found += QString("%1 %2").arg(server.host).arg(server.port);
        QTEST(found.join('|'), "servers");
    }

    /// A worker whose server is lost goes on at the next one, and stays there.
    void workerGoesOn()
    {
        auto first = std::make_unique<Relay>(TestServer::port());
        auto second = std::make_unique<Relay>(TestServer::port());
        const QString list =
            QString("%1:%2,%1:%3").arg(TestServer::host).arg(first->port()).arg(second->port());
        AutoReportWorker worker({"QMYSQL", "worker", list, TestServer::port(), bench->schema.name(),
                                 TestServer::user, TestServer::password, ""},
                                nullptr);
        QVERIFY(worker.start());
        const auto tick = [&] {
            worker.activateReports();
            return bench->log.countContaining("DailyAttenReport::doWork()");
        };
        QCOMPARE(tick(), 1);
        first.reset();
        QCOMPARE(tick(), 2);
        first = std::make_unique<Relay>(TestServer::port());
        QCOMPARE(tick(), 3);
        QCOMPARE(bench->log.texts(QtWarningMsg).filter("was lost and made again").size(), 1);
        second.reset();
        QCOMPARE(tick(), 3); // no server is left
        const QString line = bench->log.texts(QtWarningMsg).filter("no connection").join("");
        for (const QString &server : list.split(','))
            QVERIFY2(line.contains(server + ": "), qPrintable(line));
        worker.stop();
        QCOMPARE(bench->log.countContaining(QString("host='%1'").arg(list)), 1);
    }
};

QTEST_GUILESS_MAIN(TestServerList)
#include "tst_serverlist.moc"
