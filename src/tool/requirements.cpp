#include "tool/requirements.h"

#include "common/freshquery.h"
#include "tool/statementpacket.h"

#include <QRegularExpression>
#include <QSet>
#include <QSqlDriver>
#include <QSqlField>

namespace
{

/// Returns the names of the tables, in the order of the statement.
QStringList tablesIn(const QString &statement)
{
    static const QRegularExpression pattern(QStringLiteral("\\b(?:FROM|JOIN|INTO)\\s+(\\w+)"));
    QStringList names;
    for (auto match = pattern.globalMatch(statement); match.hasNext();)
        names.append(match.next().captured(1));
    return names;
}

} // namespace

bool Requirements::isMissingRight(const QString &code)
{
    return code == QLatin1String("1044") || code == QLatin1String("1142") ||
           code == QLatin1String("1143");
}

QStringList Requirements::tablesOf(const QStringList &statements)
{
    QStringList names;
    for (const QString &statement : statements)
        names += tablesIn(statement);
    names.removeDuplicates();
    return names;
}

QString Requirements::preparation(const QSqlDatabase &database, const QString &statement)
{
    static const QRegularExpression placeholder(QStringLiteral(":\\w+"));
    QSqlField text(QString(), QVariant::String);
    text.setValue(QString(statement).replace(placeholder, QStringLiteral("?")));
    return QStringLiteral("PREPARE autoreport FROM ") + database.driver()->formatValue(text);
}

UnmetRequirement Requirements::unmetBy(const QString &statement, const QSqlError &error)
{
    const QStringList tables = tablesIn(statement);
    const QString text =
        (tables.size() == 1 ? QStringLiteral("table %1: %2") : QStringLiteral("tables %1: %2"))
            .arg(tables.join(QStringLiteral(", ")), error.databaseText().simplified());
    return {text, tables, isMissingRight(error.nativeErrorCode())};
}

bool Requirements::areReadable(const QSqlDatabase &database, const QStringList &queries)
{
    return freshQuery(database).prepare(
        QStringLiteral("SELECT EXISTS(%1)").arg(queries.join(QStringLiteral("), EXISTS("))));
}

QVector<UnmetRequirement> Requirements::unmetOf(const QSqlDatabase &database,
                                                const QStringList &statements)
{
    QStringList preparations;
    for (const QString &statement : statements)
        preparations.append(preparation(database, statement));
    const QVector<Answer> answers = answersTo(database, preparations);
    QVector<UnmetRequirement> found;
    QSet<QString> known; // several statements fail if a table is missing
    for (int i = 0; i < statements.size(); ++i) {
        const QSqlError &error = answers.at(i).error;
        if (answers.at(i).isOk())
            continue;
        if (!known.contains(error.databaseText()))
            found.append(unmetBy(statements.at(i), error));
        known.insert(error.databaseText());
    }
    return found;
}
