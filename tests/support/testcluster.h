#pragma once

#include "support/testserver.h"

/// A Galera cluster of three nodes for one test: all databases created during its lifetime are on
/// it. Nodes are numbered from 0. The bench's own connections are to the last one, which stays.
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

    /// Runs one of the script's commands for a node: "kill" and "revive", "freeze" and "thaw".
    void run(const QString &command, int node) const { run(command, {QString::number(node + 1)}); }

    /// Waits up to twenty seconds for the last node to see a group of `size` nodes.
    bool settles(int size) const;

    /// Returns when a connection's node has all that was written before, and leaves it open.
    static void catchUp(QSqlDatabase &database);
    void catchUp(int node, const QString &schema) const;

    const QTemporaryDir folder;

private:
    void run(const QString &command, const QStringList &more = {}) const;

    QVector<int> ports;
};
