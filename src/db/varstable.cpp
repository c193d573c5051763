#include "db/varstable.h"

#include "common/freshquery.h"

namespace
{

QString isOneOf(const QStringList &names)
{
    return QStringLiteral("name IN('%1')").arg(names.join(QStringLiteral("','")));
}

} // namespace

VarsTable::VarsTable(const QSqlDatabase &db)
    : database(db)
{
}

Result<std::optional<QVariant>> VarsTable::value(const QString &name) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT value FROM vars WHERE name='%1' LIMIT 1").arg(name)))
        return errorOf(query);
    return query.next() ? std::optional(query.value(QStringLiteral("value"))) : std::nullopt;
}

Result<VarsTable::Values> VarsTable::values(const QStringList &names) const
{
    if (names.isEmpty())
        return Values();
    return read(QStringLiteral("SELECT name, value FROM vars WHERE ") + isOneOf(names));
}

Result<VarsTable::Values> VarsTable::valuesWithPrefix(const QString &prefix,
                                                      const QStringList &others) const
{
    return read(prefixStatement(prefix, others));
}

QString VarsTable::prefixStatement(const QString &prefix, const QStringList &others)
{
    const QString statement =
        QStringLiteral("SELECT name, value FROM vars WHERE name LIKE '%1%'").arg(prefix);
    return others.isEmpty() ? statement : statement + QStringLiteral(" OR ") + isOneOf(others);
}

Result<VarsTable::Values> VarsTable::read(const QString &sql) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(sql))
        return errorOf(query);
    Values values;
    while (query.next()) {
        values.insert(query.value(QStringLiteral("name")).toString(),
                      query.value(QStringLiteral("value")));
    }
    return values;
}

Result<QVector<QVariant>> VarsTable::lock(const QString &name) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(lockStatement(name)))
        return errorOf(query);
    return lockedValues(query);
}

QString VarsTable::lockStatement(const QString &name)
{
    return QStringLiteral("SELECT value FROM vars WHERE name='%1' FOR UPDATE").arg(name);
}

QVector<QVariant> VarsTable::lockedValues(QSqlQuery &query)
{
    QVector<QVariant> values;
    while (query.next())
        values.append(query.value(0));
    return values;
}

Result<bool> VarsTable::insertMissing(const QString &name, const QVariant &value) const
{
    QSqlQuery query = freshQuery(database);
    // Do not use INSERT IGNORE: it would also turn errors other than duplicate keys into warnings.
    if (!query.prepare(QStringLiteral("INSERT INTO vars (name, value) VALUES(:name, :value) ON "
                                      "DUPLICATE KEY UPDATE value=vars.value")))
        return errorOf(query);
    query.bindValue(QStringLiteral(":name"), name);
    query.bindValue(QStringLiteral(":value"), value);
    if (!query.exec())
        return errorOf(query);
    return query.numRowsAffected() == 1;
}

QString VarsTable::upsertStatement()
{
    // Without a unique key on `name`, the statement adds a row instead of replacing the value.
    return QStringLiteral("INSERT INTO vars (name, value) VALUES(:name, :value) ON DUPLICATE KEY "
                          "UPDATE value=VALUES(value);");
}

QVector<Error> VarsTable::store(const Values &values) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.prepare(upsertStatement()))
        return {errorOf(query)};
    QVector<Error> errors;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        // Bind the values, because they may contain any character.
        query.bindValue(QStringLiteral(":name"), entry.key());
        query.bindValue(QStringLiteral(":value"), entry.value());
        if (!query.exec())
            errors.append(errorOf(query));
    }
    return errors;
}

Result<int> VarsTable::remove(const QString &name, bool asPrefix) const
{
    const QString sql = asPrefix ? QStringLiteral("DELETE FROM vars WHERE name LIKE '%1%'")
                                 : QStringLiteral("DELETE FROM vars WHERE name='%1'");
    QSqlQuery query = freshQuery(database);
    if (!query.exec(sql.arg(name)))
        return errorOf(query);
    return query.numRowsAffected();
}
