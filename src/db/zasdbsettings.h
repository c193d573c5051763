#pragma once

#include <QMap>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

/**
 * A schema's settings: VarsTable, with its errors logged.
 *
 * It caches nothing: every call is one or more statements. Nothing here opens the connection but
 * openDB(); on a closed or invalid one every statement fails. For the thread that owns the
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

    /// Returns the stored value, text or bytes. A missing key is not an error.
    QVariant variableGet(const QString &name, const QVariant &defaultValue) const;
    /// Returns those of the keys that exist.
    QMap<QString, QVariant> variableGetMultiple(const QStringList &names) const;
    /// Returns every key that begins with `prefix`, the prefix included.
    QMap<QString, QVariant> variableGetMultiple(const QString &prefix) const;

    bool variableSet(const QString &name, const QVariant &value);
    /// Returns whether all were stored. One that fails does not stop the others.
    bool variableSetMultiple(const QMap<QString, QVariant> &values);
    /// Deletes one key, or all that begin with `name`. Returns whether there was any.
    bool variableDel(const QString &name, bool asPrefix);

private:
    QSqlDatabase database;
};
