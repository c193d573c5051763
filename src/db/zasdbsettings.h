#pragma once

#include <QMap>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

/**
 * A schema's settings, stored in the table `vars`. Logs all errors.
 *
 * Caches nothing: every call runs its statements. Only openDB() opens the connection; if the
 * connection is closed or invalid, every statement fails. Use it only on the thread that owns the
 * connection.
 *
 * An apostrophe in a name breaks the statement, except when storing. A prefix is matched with LIKE,
 * without escaping: "_" and "%" in it are wildcards.
 */
class ZasDbSettings
{
public:
    ZasDbSettings() = default;
    explicit ZasDbSettings(const QSqlDatabase &db);

    void setDB(const QSqlDatabase &db);
    bool openDB();
    void closeDB();

    /// Returns the value of the key `name`, or `defaultValue` if the key is missing or the query
    /// fails. The column's type decides whether a stored value is a text or a byte array.
    QVariant variableGet(const QString &name, const QVariant &defaultValue) const;
    /// Returns those keys in `names` that exist in the table, with their values. Returns an empty
    /// map on an error.
    QMap<QString, QVariant> variableGetMultiple(const QStringList &names) const;
    /// Returns all keys that begin with `prefix`, with their values. Returns an empty map on an
    /// error.
    QMap<QString, QVariant> variableGetMultiple(const QString &prefix) const;

    bool variableSet(const QString &name, const QVariant &value);
    /// Inserts or replaces all values. If one cannot be stored, still stores the others. Returns
    /// whether all were stored.
    bool variableSetMultiple(const QMap<QString, QVariant> &values);
    /// Deletes the key `name` or, if `asPrefix`, all keys that begin with `name`. Returns whether
    /// it deleted a key; false on an error.
    bool variableDel(const QString &name, bool asPrefix);

private:
    QSqlDatabase database;
};
