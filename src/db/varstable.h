#pragma once

#include "common/result.h"

#include <QMap>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

/**
 * A schema's table `vars`: keys and values.
 *
 * Caches nothing: every call runs its statement, and an error is the driver's text. Names are whole
 * keys with their dots, and are not escaped: a quotation mark in one breaks the statement, and in a
 * prefix "_" matches any character and "%" any text. On a closed or invalid connection every
 * statement fails. For the thread that owns the connection.
 */
class VarsTable
{
public:
    using Values = QMap<QString, QVariant>;

    explicit VarsTable(const QSqlDatabase &db);

    /// Returns the value, text or bytes as the driver has it, or nothing if the key is missing.
    Result<std::optional<QVariant>> value(const QString &name) const;
    /// Returns those of the keys that exist. Runs no statement if `names` is empty.
    Result<Values> values(const QStringList &names) const;
    /// Returns all keys that begin with `prefix`, in full.
    Result<Values> valuesWithPrefix(const QString &prefix) const;

    /// Returns the values of all rows of that name, as last committed, and locks the rows until the
    /// transaction ends; if there is none, locks the gap where it would be.
    Result<QVector<QVariant>> lock(const QString &name) const;
    /// Inserts and locks a row of that name if there is none. Returns whether it did.
    Result<bool> insertMissing(const QString &name, const QVariant &value) const;

    /// Inserts or replaces all of them, those after an error too. Returns the errors.
    QVector<Error> store(const Values &values) const;

    /// Deletes one key, or all that begin with `name`. Returns how many were deleted.
    Result<int> remove(const QString &name, bool asPrefix) const;

    /// Return the statements of valuesWithPrefix() and of store(), the latter with placeholders.
    static QString prefixStatement(const QString &prefix);
    static QString upsertStatement();

private:
    Result<Values> read(const QString &sql) const;

    QSqlDatabase database;
};
