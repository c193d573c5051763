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
    /// Returns those of the keys that exist.
    QMap<QString, QVariant> variableGetMultiple(const QStringList &names) const;
    /// Returns all keys that begin with `prefix`, in full.
    QMap<QString, QVariant> variableGetMultiple(const QString &prefix) const;

    bool variableSet(const QString &name, const QVariant &value);
    /// Returns whether all were stored. An error does not keep it from the rest.
    bool variableSetMultiple(const QMap<QString, QVariant> &values);
    /// Deletes one key, or all that begin with `name`. Returns whether any was deleted.
    bool variableDel(const QString &name, bool asPrefix);

private:
    QSqlDatabase database;
};
