#include "support/testcluster.h"

#include "support/testdata.h"
#include "support/testserver.h"

#include <QProcess>

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

void TestCluster::run(const char *command, const QStringList &more) const
{
    const QStringList arguments{command, folder.filePath("cluster")};
    if (QProcess::execute(AUTOREPORT_PRIVATE_CLUSTER, arguments + more) != 0)
        qFatal("test bench: cannot %s the cluster", command);
}
