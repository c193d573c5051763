#pragma once

#include <QMap>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

/**
 * A schema's settings: VarsTable, with its errors logged.
 *
 * Caches nothing: every call runs its statements. Only openDB() opens the connection; on a closed
 * or invalid one every statement fails. For the thread that owns the connection.
 */
class ZasDbSettings
{
public:
    ZasDbSettings() = default;
    explicit ZasDbSettings(const QSqlDatabase &db);

    void setDB(const QSqlDatabase &db);
    bool openDB();
    void closeDB();

    /// Returns the stored value, text or bytes, or `defaultValue` if the key is missing.
    QVariant variableGet(const QString &name, const QVariant &defaultValue) const;
    /// Returns the values of those keys that exist.
    QMap<QString, QVariant> variableGetMultiple(const QStringList &names) const;
    /// Returns the values of all keys that begin with `prefix`, by their full keys.
    QMap<QString, QVariant> variableGetMultiple(const QString &prefix) const;

    bool variableSet(const QString &name, const QVariant &value);
    /// Stores all values, even after an error. Returns whether all were stored.
    bool variableSetMultiple(const QMap<QString, QVariant> &values);
    /// Deletes the key `name`, or if `asPrefix` all keys that begin with it. Returns whether any
    /// was deleted.
    bool variableDel(const QString &name, bool asPrefix);

private:
    QSqlDatabase database;
};
