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
 * It caches nothing: every call is a statement, and an error is the driver's text. Names are whole
 * keys with their dots, and go into the statements as they are: a quotation mark in a name breaks
 * the statement, and in a prefix "_" and "%" stand for any character and any text. On a closed or
 * invalid connection every statement fails. For the thread that owns the connection.
 */
class VarsTable
{
public:
    using Values = QMap<QString, QVariant>;

    explicit VarsTable(const QSqlDatabase &database);

    /// Returns the value as the driver does, text or bytes; nothing for a missing key.
    Result<std::optional<QVariant>> value(const QString &name) const;
    /// Returns those of the keys that exist; without keys, no statement runs.
    Result<Values> values(const QStringList &names) const;
    /// Returns every key that begins with `prefix`, the prefix included.
    Result<Values> valuesWithPrefix(const QString &prefix) const;

    /// Returns the values of all rows of that name, as last committed, and locks them until the
    /// transaction ends; without a row, the place where one would be.
    Result<QVector<QVariant>> lock(const QString &name) const;
    /// Inserts the row of that name where there is none, and locks it as well.
    Result<bool> insertMissing(const QString &name, const QVariant &value) const;

    /// Inserts or replaces all of them, those after one that fails too. Returns the errors.
    QVector<Error> store(const Values &values) const;

    /// Deletes one key, or all that begin with `name`. Returns how many there were.
    Result<int> remove(const QString &name, bool asPrefix) const;

    // The statements of valuesWithPrefix() and store(); the latter with placeholders.
    static QString prefixStatement(const QString &prefix);
    static QString upsertStatement();

private:
    Result<Values> read(const QString &sql) const;

    QSqlDatabase database;
};
