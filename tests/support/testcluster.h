#pragma once

#include <QStringList>
#include <QTemporaryDir>

/**
 * A Galera cluster of three nodes for one test: all databases created during its lifetime are on
 * it. Nodes are numbered from 0. The bench's own connections are to the last one, which stays.
 */
class TestCluster
{
public:
    static constexpr int nodes = 3;

    explicit TestCluster(const QStringList &serverOptions = {});
    ~TestCluster() { run("stop"); }
    Q_DISABLE_COPY(TestCluster)

    int port(int node) const { return ports.at(node); }
    /// Returns all nodes as the program takes them, beginning with that one.
    QString servers(int first) const;

    /// Ends the node by SIGKILL.
    void kill(int node) const { run("kill", {QString::number(node + 1)}); }
    /// Starts it again. It then has everything that it missed.
    void revive(int node) const { run("revive", {QString::number(node + 1)}); }

    const QTemporaryDir folder;

private:
    void run(const char *command, const QStringList &more = {}) const;

    QVector<int> ports;
};
