#include "db/zasdbsettings.h"

#include "db/servercertificate.h"
#include "db/varstable.h"

#include <QDebug>
#include <QSqlError>

namespace
{

void logError(const char *operation, const QString &error)
{
    qCritical().noquote() << operation << error;
}

QMap<QString, QVariant> valuesOrLog(const Result<VarsTable::Values> &read)
{
    if (read.isOk())
        return read.value();
    logError("ZasDbSettings::variableGetMultiple - SQL ERROR:", read.error());
    return {};
}

} // namespace

ZasDbSettings::ZasDbSettings(const QSqlDatabase &db)
    : database(db)
{
}

void ZasDbSettings::setDB(const QSqlDatabase &db)
{
    database = db;
}

bool ZasDbSettings::openDB()
{
    if (openTrusted(database))
        return true;
    if (database.lastError().isValid())
        logError("ZasDbSettings Database Error:", database.lastError().text());
    return false;
}

void ZasDbSettings::closeDB()
{
    database.close();
}

QVariant ZasDbSettings::variableGet(const QString &name, const QVariant &defaultValue) const
{
    const auto found = VarsTable(database).value(name);
    if (found.isOk())
        return found.value().value_or(defaultValue);
    logError("ZasDbSettings::variableGet - SQL ERROR:", found.error());
    return defaultValue;
}

QMap<QString, QVariant> ZasDbSettings::variableGetMultiple(const QStringList &names) const
{
    return valuesOrLog(VarsTable(database).values(names));
}

QMap<QString, QVariant> ZasDbSettings::variableGetMultiple(const QString &prefix) const
{
    return valuesOrLog(VarsTable(database).valuesWithPrefix(prefix));
}

bool ZasDbSettings::variableSet(const QString &name, const QVariant &value)
{
    return variableSetMultiple({{name, value}});
}

bool ZasDbSettings::variableSetMultiple(const QMap<QString, QVariant> &values)
{
    const QVector<Error> errors = VarsTable(database).store(values);
    for (const Error &error : errors)
        logError("variableSet ERROR:", error.text);
    return errors.isEmpty();
}

bool ZasDbSettings::variableDel(const QString &name, bool asPrefix)
{
    const auto deleted = VarsTable(database).remove(name, asPrefix);
    if (deleted.isOk())
        return deleted.value() > 0;
    logError("ZasDbSettings::variableDel - SQL ERROR:", deleted.error());
    return false;
}
