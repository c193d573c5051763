#pragma once

#include <QMap>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

/**
 * A schema's settings. Reads and writes them through VarsTable and logs its errors.
 *
 * Caches nothing: every call runs its statements. Only openDB() opens the connection; if the
 * connection is closed or invalid, every statement fails. Use it only on the thread that owns the
 * connection.
 */
class ZasDbSettings
{
public:
    ZasDbSettings() = default;
    explicit ZasDbSettings(const QSqlDatabase &db);

    void setDB(const QSqlDatabase &db);
    bool openDB();
    void closeDB();

    /// Returns the stored value, text or bytes. Returns `defaultValue` if the key is missing or the
    /// query fails.
    QVariant variableGet(const QString &name, const QVariant &defaultValue) const;
    /// Returns the keys of `names` that exist, with their values. Returns an empty map on an error.
    QMap<QString, QVariant> variableGetMultiple(const QStringList &names) const;
    /// Returns the keys that begin with `prefix`, with their values. Returns an empty map on an
    /// error.
    QMap<QString, QVariant> variableGetMultiple(const QString &prefix) const;

    bool variableSet(const QString &name, const QVariant &value);
    /// Stores all values; an error does not stop the rest. Returns whether all were stored.
    bool variableSetMultiple(const QMap<QString, QVariant> &values);
    /// Deletes the key `name` or, if `asPrefix`, all keys that begin with `name`. Returns whether
    /// any key was deleted.
    bool variableDel(const QString &name, bool asPrefix);

private:
    QSqlDatabase database;
};
