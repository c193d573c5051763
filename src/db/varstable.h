#pragma once

#include "common/result.h"

#include <QMap>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

class QSqlQuery;

/**
 * A schema's table `vars`: keys and values.
 *
 * Caches nothing: every call runs its statement. Errors have the driver's text. If the connection
 * is closed or invalid, every statement fails. Use it only on the thread that owns the connection.
 *
 * Only store() and insertMissing() accept any character in a name. In all other functions, an
 * apostrophe breaks the statement. A prefix is matched with LIKE, without escaping: "_" and "%" in
 * it are wildcards.
 */
class VarsTable
{
public:
    using Values = QMap<QString, QVariant>;

    explicit VarsTable(const QSqlDatabase &db);

    /// Returns the value of the key `name`, or nothing if the key is missing. The column's type
    /// decides whether the value is a text or a byte array.
    Result<std::optional<QVariant>> value(const QString &name) const;
    /// Returns those keys in `names` that exist in the table, with their values. Runs no statement
    /// if `names` is empty.
    Result<Values> values(const QStringList &names) const;
    /// Returns all keys that begin with `prefix`, and those keys in `others` that exist in the
    /// table, with their values.
    Result<Values> valuesWithPrefix(const QString &prefix, const QStringList &others = {}) const;

    /// Locks all rows of the key `name` until the transaction ends, and returns their latest
    /// committed values. If the key is missing, another transaction may still insert it.
    Result<QVector<QVariant>> lock(const QString &name) const;
    /// Return the statement of lock(), and the values that a query with this statement has read.
    static QString lockStatement(const QString &name);
    static QVector<QVariant> lockedValues(QSqlQuery &query);
    /// Inserts a row unless the key `name` exists, and locks the new row until the transaction
    /// ends. Returns whether it inserted a row. Without a unique key on `name`, always inserts one.
    Result<bool> insertMissing(const QString &name, const QVariant &value) const;

    /// Inserts or replaces all values. If one cannot be stored, still stores the others. Returns
    /// the errors.
    QVector<Error> store(const Values &values) const;

    /// Deletes the key `name` or, if `asPrefix`, all keys that begin with `name`. Returns the
    /// number of deleted rows.
    Result<int> remove(const QString &name, bool asPrefix) const;

    /// Return the statements of valuesWithPrefix() and of store(). That of store() has
    /// placeholders.
    static QString prefixStatement(const QString &prefix, const QStringList &others = {});
    static QString upsertStatement();

private:
    Result<Values> read(const QString &sql) const;

    QSqlDatabase database;
};
