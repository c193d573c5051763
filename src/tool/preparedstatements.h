#pragma once

#include <QByteArray>
#include <QMutex>
#include <QSet>
#include <QStringList>

/**
 * Remembers which statements the server could prepare on which tables.
 *
 * To prepare a report's statements, the server opens a dozen tables, which costs more than
 * everything else that a command asks about a schema. Whether the server succeeds depends on the
 * definitions of the tables and the rights of the account, so statements need not be prepared again
 * for a schema that equals an earlier one in both. Damaged tables are not noticed this way.
 * Thread-safe.
 */
class PreparedStatements
{
public:
    /// `digest` is TableFacts::digest. If it is empty, contains() returns false.
    bool contains(const QByteArray &digest, const QStringList &statements) const;
    void insert(const QByteArray &digest, const QStringList &statements);

private:
    mutable QMutex mutex;
    QSet<QByteArray> known;
};
