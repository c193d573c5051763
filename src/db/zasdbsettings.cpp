#include "db/zasdbsettings.h"

#include "common/freshquery.h"

#include <QDebug>
#include <QSqlError>

namespace
{

// It replaces a value only because `name` is unique in the table.
QString upsert()
{
    return QStringLiteral("INSERT INTO vars (name, value) VALUES(:name, :value) ON DUPLICATE KEY "
                          "UPDATE value=VALUES(value);");
}

// Says so if the query's last step failed; `text` names the operation.
void logError(const char *text, const QSqlQuery &query)
{
    if (query.lastError().isValid())
        qCritical().noquote() << text << query.lastError().text();
}

// One execution of the prepared upsert. Values are bound, so that any text can be stored.
bool store(QSqlQuery &query, const QString &name, const QVariant &value)
{
    query.bindValue(QStringLiteral(":name"), name);
    query.bindValue(QStringLiteral(":value"), value);
    const bool ran = query.exec();
    logError("variableSet ERROR:", query);
    return ran;
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
    if (database.open())
        return true;
    if (database.lastError().isValid())
        qCritical().noquote() << "ZasDbSettings Database Error:" << database.lastError().text();
    return false;
}

void ZasDbSettings::closeDB()
{
    database.close();
}

QVariant ZasDbSettings::variableGet(const QString &name, const QVariant &defaultValue) const
{
    QSqlQuery query = freshQuery(database);
    if (query.exec(QStringLiteral("SELECT value FROM vars WHERE name='%1' LIMIT 1").arg(name)) &&
        query.next())
        return query.value(QStringLiteral("value"));
    logError("ZasDbSettings::variableGet - SQL ERROR:", query);
    return defaultValue;
}

QMap<QString, QVariant> ZasDbSettings::variableGetMultiple(const QStringList &names) const
{
    if (names.isEmpty())
        return {};
    // Not escaped, as everywhere: the names are the program's own.
    const QString list = QLatin1Char('\'') + names.join(QStringLiteral("','")) + QLatin1Char('\'');
    return readAll(QStringLiteral("SELECT name, value FROM vars WHERE name IN(%1)").arg(list));
}

QMap<QString, QVariant> ZasDbSettings::variableGetMultiple(const QString &prefix) const
{
    return readAll(
        QStringLiteral("SELECT name, value FROM vars WHERE name LIKE '%1%'").arg(prefix));
}

QMap<QString, QVariant> ZasDbSettings::readAll(const QString &sql) const
{
    QMap<QString, QVariant> values;
    QSqlQuery query = freshQuery(database);
    query.exec(sql); // on a failure there is no row, and the error is logged below
    while (query.next()) {
        values.insert(query.value(QStringLiteral("name")).toString(),
                      query.value(QStringLiteral("value")));
    }
    logError("ZasDbSettings::variableGetMultiple - SQL ERROR:", query);
    return values;
}

bool ZasDbSettings::variableSet(const QString &name, const QVariant &value)
{
    QSqlQuery query = freshQuery(database);
    if (query.prepare(upsert()))
        return store(query, name, value);
    logError("variableSet ERROR:", query);
    return false;
}

bool ZasDbSettings::variableSetMultiple(const QMap<QString, QVariant> &values)
{
    QSqlQuery query = freshQuery(database);
    if (!query.prepare(upsert())) {
        qCritical().noquote() << "variableSet ERROR:" << query.lastError().text();
        return false;
    }
    int stored = 0;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        stored += store(query, entry.key(), entry.value()) ? 1 : 0;
    return stored == values.size();
}

bool ZasDbSettings::variableDel(const QString &name, bool asPrefix)
{
    const QString sql = asPrefix ? QStringLiteral("DELETE FROM vars WHERE name LIKE '%1%'")
                                 : QStringLiteral("DELETE FROM vars WHERE name='%1'");
    QSqlQuery query = freshQuery(database);
    const bool deleted = query.exec(sql.arg(name)) && query.numRowsAffected() > 0;
    logError("ZasDbSettings::variableDel - SQL ERROR:", query);
    return deleted;
}
