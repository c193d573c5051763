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
 * Caches nothing: every call runs its statement, and an error is the driver's text. Names are
 * complete keys, dots included. They are not escaped: an apostrophe breaks the statement, and
 * "_" and "%" in a prefix are wildcards. On a closed or invalid connection every statement fails.
 * For the thread that owns the connection.
 */
class VarsTable
{
public:
    using Values = QMap<QString, QVariant>;

    explicit VarsTable(const QSqlDatabase &db);

    /// Returns the value as the driver reads it, text or bytes, or nothing if the key is missing.
    Result<std::optional<QVariant>> value(const QString &name) const;
    /// Returns the values of those keys that exist. Runs no statement if `names` is empty.
    Result<Values> values(const QStringList &names) const;
    /// Returns the values of all keys that begin with `prefix` and of those `others` that exist, by
    /// their full keys.
    Result<Values> valuesWithPrefix(const QString &prefix, const QStringList &others = {}) const;

    /// Returns the latest values of all rows of that name and locks these rows until the
    /// transaction ends. If there are none, other transactions may still insert one.
    Result<QVector<QVariant>> lock(const QString &name) const;
    /// Return the statement of lock(), and the values that a query has found with it.
    static QString lockStatement(const QString &name);
    static QVector<QVariant> lockedValues(QSqlQuery &query);
    /// Inserts a row, locked until the transaction ends, unless one of that name exists. Returns
    /// whether it inserted one.
    Result<bool> insertMissing(const QString &name, const QVariant &value) const;

    /// Inserts or replaces all values; an error does not stop the rest. Returns the errors.
    QVector<Error> store(const Values &values) const;

    /// Deletes the key `name`, or if `asPrefix` all keys that begin with it. Returns their number.
    Result<int> remove(const QString &name, bool asPrefix) const;

    /// Return the statements of valuesWithPrefix() and of store(), the latter with placeholders.
    static QString prefixStatement(const QString &prefix, const QStringList &others = {});
    static QString upsertStatement();

private:
    Result<Values> read(const QString &sql) const;

    QSqlDatabase database;
};
