#pragma once

#include <QMap>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

/**
 * Keys and values in a schema's table `vars`.
 *
 * It caches nothing: every call is a statement. Names are whole keys with their dots, and go into
 * the statements as they are: a quotation mark in a name breaks the statement, and in a prefix "_"
 * and "%" stand for any character and any text. Nothing here opens the connection but openDB(); on
 * a closed or invalid one every statement fails. For the thread that owns the connection.
 */
class ZasDbSettings
{
public:
    ZasDbSettings() = default;
    explicit ZasDbSettings(const QSqlDatabase &db);

    void setDB(const QSqlDatabase &db);
    bool openDB();
    void closeDB();

    /// The value as the driver gives it, text or bytes. A missing key is not an error.
    QVariant variableGet(const QString &name, const QVariant &defaultValue) const;
    /// Missing keys are missing in the map.
    QMap<QString, QVariant> variableGetMultiple(const QStringList &names) const;
    /// Every key that begins with `prefix`; the map's keys keep it.
    QMap<QString, QVariant> variableGetMultiple(const QString &prefix) const;

    bool variableSet(const QString &name, const QVariant &value);
    /// True when all were stored. An entry that fails stops none of the others.
    bool variableSetMultiple(const QMap<QString, QVariant> &values);
    /// One key, or all that begin with `name`. False when there was nothing to delete.
    bool variableDel(const QString &name, bool asPrefix);

private:
    QMap<QString, QVariant> readAll(const QString &sql) const;

    QSqlDatabase database;
};
