#include "tool/tablefacts.h"

#include "common/freshquery.h"

#include <QStringList>
#include <QVariant>

namespace
{

// The rows of all parts have the same columns: what they are about, the server's limit for packets,
// a name, two texts and a number. The catalogue of columns is by far the most expensive part: the
// server opens all tables of the schema unless the statement names one with "=". So the catalogue
// is read only for the mails, which the account may not be allowed to read themselves.
constexpr const char *parts[] = {
    "SELECT 'engine', @@max_allowed_packet, table_name, engine, NULL, NULL FROM "
    "information_schema.tables WHERE table_schema = DATABASE() AND table_name = 'emails' AND "
    "engine != 'InnoDB'",
    "SELECT 'engine', @@max_allowed_packet, table_name, engine, NULL, NULL FROM "
    "information_schema.tables WHERE table_schema = DATABASE() AND table_name = 'vars' AND "
    "engine != 'InnoDB'",
    "SELECT 'key', @@max_allowed_packet, index_name, MAX(column_name), NULL, COUNT(*) FROM "
    "information_schema.statistics WHERE table_schema = DATABASE() AND table_name = 'vars' AND "
    "non_unique = 0 GROUP BY index_name",
    "SELECT 'column', @@max_allowed_packet, table_name, column_name, character_set_name, "
    "character_maximum_length FROM information_schema.columns WHERE table_schema = DATABASE() AND "
    "table_name = 'emails' AND column_name IN ('subject', 'body', 'to', 'data')",
    "SELECT 'column', @@max_allowed_packet, 'people', 'name', CHARSET(name), NULL FROM people "
    "LIMIT 1",
    "SELECT 'column', @@max_allowed_packet, 'people', 'surname', CHARSET(surname), NULL FROM "
    "people LIMIT 1",
    "SELECT 'column', @@max_allowed_packet, 'vars', 'value', CHARSET(value), NULL FROM vars LIMIT "
    "1"};

void take(const QSqlQuery &row, TableFacts &facts)
{
    const QString about = row.value(0).toString();
    const QString name = row.value(2).toString();
    const QString text = row.value(3).toString();
    const qint64 number = row.value(5).toLongLong();
    facts.packetBytes = row.value(1).toLongLong();
    if (about == QLatin1String("engine"))
        facts.unsafeTables.append({name, text});
    else if (about == QLatin1String("key")) // a key over several columns allows equal names
        facts.isNameUnique |=
            number == 1 && text.compare(QLatin1String("name"), Qt::CaseInsensitive) == 0;
    else if (text == QLatin1String("data"))
        facts.dataBytes = number;
    else
        facts.texts.append({name, text, row.value(4).toString()});
}

/// Returns whether the statement could be executed.
bool takeAll(const QSqlDatabase &database, const QString &statement, TableFacts &facts)
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(statement))
        return false;
    while (query.next())
        take(query, facts);
    return true;
}

} // namespace

TableFacts TableFacts::read(const QSqlDatabase &database)
{
    QStringList statements;
    for (const char *part : parts)
        statements.append(QLatin1Char('(') + QLatin1String(part) + QLatin1Char(')'));
    TableFacts facts;
    if (takeAll(database, statements.join(QStringLiteral(" UNION ALL ")), facts))
        return facts;
    for (const QString &statement : qAsConst(statements))
        takeAll(database, statement, facts);
    return facts;
}
