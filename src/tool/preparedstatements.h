#pragma once

#include <QByteArray>
#include <QMutex>
#include <QSet>
#include <QStringList>

/**
 * Remembers which statements the server could prepare on which tables.
 *
 * To prepare a report's statements, the server opens a dozen tables, which costs more than
 * everything else that a command asks about a schema. Whether it succeeds depends on the tables'
 * definitions and the account's rights, so a schema like an earlier one needs no asking. Only
 * a damaged table differs without showing it. Thread-safe.
 */
class PreparedStatements
{
public:
    /// `digest` is TableFacts::digest. Returns false if it is empty.
    bool contains(const QByteArray &digest, const QStringList &statements) const;
    void insert(const QByteArray &digest, const QStringList &statements);

private:
    mutable QMutex mutex;
    QSet<QByteArray> known;
};
