#include "support/testcluster.h"

TestCluster::TestCluster(const QStringList &serverOptions)
{
    run("start", serverOptions);
    for (const QByteArray &line : readFile(folder.filePath("cluster/ports")).split('\n'))
        ports.append(line.toInt());
    writeFile(folder.filePath("port"), QByteArray::number(ports.at(nodes - 1)));
    qputenv("AUTOREPORT_TEST_SERVER", folder.path().toLocal8Bit());
}

QString TestCluster::servers(int first) const
{
    QStringList servers;
    for (int i = 0; i < nodes; ++i)
        servers += QString("%1:%2").arg(TestServer::host).arg(port((first + i) % nodes));
    return servers.join(',');
}

bool TestCluster::settles(int size) const
{
    bool settled = false;
    {
        QSqlDatabase database = TestServer::addConnection("group", QString());
        const auto seen = [&database] {
            if (!database.isOpen())
                database.open();
            QSqlQuery query = database.exec("SHOW STATUS LIKE 'wsrep_cluster_size'");
            return query.next() ? query.value(1).toInt() : 0;
        };
        settled = QTest::qWaitFor([&] { return seen() == size; }, 20000);
    }
    QSqlDatabase::removeDatabase("group");
    return settled;
}

void TestCluster::catchUp(QSqlDatabase &database)
{
    // A node refuses connections for a moment while others come or go.
    const auto caughtUp = [&database] {
        return database.open() && database.exec("SET SESSION wsrep_sync_wait = 1").isActive() &&
               database.exec("SELECT COUNT(*) FROM mysql.db").isActive();
    };
    if (!QTest::qWaitFor(caughtUp, patienceMs))
        qFatal("test bench: the node at port %i does not catch up", database.port());
    database.exec("SET SESSION wsrep_sync_wait = 0");
}

void TestCluster::catchUp(int node, const QString &schema) const
{
    {
        QSqlDatabase database = TestServer::addConnection("node", schema);
        database.setPort(port(node));
        catchUp(database);
    }
    QSqlDatabase::removeDatabase("node");
}

void TestCluster::run(const QString &command, const QStringList &more) const
{
    const QStringList arguments{command, folder.filePath("cluster")};
    if (QProcess::execute(AUTOREPORT_PRIVATE_CLUSTER, arguments + more) != 0)
        qFatal("test bench: cannot %s the cluster", qUtf8Printable(command));
}
