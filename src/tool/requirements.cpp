#include "tool/requirements.h"

#include "common/freshquery.h"
#include "db/mailrepository.h"
#include "db/varstable.h"

#include <QRegularExpression>
#include <QSet>
#include <QSqlError>

namespace
{

QStringList tablesOf(const QString &statement)
{
    static const QRegularExpression pattern(QStringLiteral("\\b(?:FROM|JOIN|INTO)\\s+(\\w+)"));
    QStringList names;
    for (auto match = pattern.globalMatch(statement); match.hasNext();)
        names.append(match.next().captured(1));
    return names;
}

UnmetRequirement unmet(const QString &statement, const QSqlError &error)
{
    const QStringList tables = tablesOf(statement);
    const QString text =
        (tables.size() == 1 ? QStringLiteral("table %1: %2") : QStringLiteral("tables %1: %2"))
            .arg(tables.join(QStringLiteral(", ")), error.databaseText().simplified());
    return {text, tables, Requirements::isMissingRight(error.nativeErrorCode())};
}

QVector<UnmetRequirement> unmetOf(const QSqlDatabase &database, const QStringList &statements)
{
    QVector<UnmetRequirement> found;
    QSet<QString> known; // a missing table makes several statements fail
    for (const QString &statement : statements) {
        QSqlQuery query = freshQuery(database);
        if (query.prepare(statement))
            continue;
        const QSqlError error = query.lastError();
        if (!known.contains(error.databaseText()))
            found.append(unmet(statement, error));
        known.insert(error.databaseText());
    }
    return found;
}

} // namespace

bool Requirements::isMissingRight(const QString &code)
{
    return code == QLatin1String("1044") || code == QLatin1String("1142") ||
           code == QLatin1String("1143");
}

bool Requirements::areReadable(const QSqlDatabase &database, const QStringList &queries)
{
    return freshQuery(database).prepare(
        QStringLiteral("SELECT EXISTS(%1)").arg(queries.join(QStringLiteral("), EXISTS("))));
}

QVector<UnmetRequirement> Requirements::unreadable(const QSqlDatabase &database,
                                                   const QStringList &queries)
{
    return unmetOf(database, queries);
}

QVector<UnmetRequirement> Requirements::unqueuable(const QSqlDatabase &database)
{
    return unmetOf(database, {MailRepository::insertStatement()});
}

QVector<UnmetRequirement> Requirements::unmarkable(const QSqlDatabase &database)
{
    return unmetOf(database, {VarsTable::upsertStatement()});
}
