#include "tool/tablefacts.h"

#include "common/freshquery.h"
#include "tool/statementpacket.h"

#include <QVariant>

namespace
{

/// Returns the expressions that select the number of rows and a 60-bit hash of these columns. The
/// hash does not depend on the order of the rows.
QString digestOf(const char *columns)
{
    return QStringLiteral("COUNT(*), BIT_XOR(CONV(LEFT(MD5(CONCAT_WS('|', %1)), 15), 16, 10))")
        .arg(QLatin1String(columns));
}

/// Returns the clause that selects the catalogue's rows about these tables. Without the names, the
/// server would read the rows of every table of the schema.
QString areOf(const QStringList &tables)
{
    return QStringLiteral(" WHERE table_schema = DATABASE() AND table_name IN ('%1')")
        .arg(tables.join(QStringLiteral("', '")));
}

// TableFacts::of() reads the columns of the following statements by their positions. @@read_only is
// in MAX(), because MariaDB evaluates a bare Boolean variable as 0 beside an aggregate.

QString columnsStatement(const QStringList &tables)
{
    return QStringLiteral("SELECT ") +
           digestOf("table_name, column_name, collation_name, character_maximum_length, "
                    "privileges") +
           QStringLiteral(", @@max_allowed_packet, MAX(IF(table_name = 'emails' AND column_name = "
                          "'data', character_maximum_length, NULL)), "
                          "GROUP_CONCAT(IF(character_set_name NOT LIKE 'utf8%' AND ((table_name = "
                          "'emails' AND column_name IN ('subject', 'body', 'to')) OR (table_name = "
                          "'people' AND column_name IN ('name', 'surname')) OR (table_name = "
                          "'vars' AND column_name = 'value')), CONCAT_WS(' ', table_name, "
                          "column_name, character_set_name), NULL) ORDER BY table_name, "
                          "ordinal_position), MAX(@@read_only) FROM information_schema.columns") +
           areOf(tables);
}

QString tablesStatement(const QStringList &tables)
{
    return QStringLiteral("SELECT ") + digestOf("table_name, table_type, engine") +
           QStringLiteral(", SUM(table_type != 'BASE TABLE'), GROUP_CONCAT(IF(engine != 'InnoDB' "
                          "AND table_name IN ('emails', 'vars'), CONCAT_WS(' ', table_name, "
                          "engine), NULL) ORDER BY table_name) FROM information_schema.tables") +
           areOf(tables);
}

QString keysStatement()
{
    return QStringLiteral("SELECT MAX(column_name), COUNT(*) FROM information_schema.statistics "
                          "WHERE table_schema = DATABASE() AND table_name = 'vars' AND non_unique "
                          "= 0 GROUP BY index_name");
}

/// Returns the elements of a GROUP_CONCAT(), each split into words.
QVector<QStringList> listOf(const QVariant &text)
{
    QVector<QStringList> list;
    for (const QString &one : text.toString().split(QLatin1Char(','), Qt::SkipEmptyParts))
        list.append(one.split(QLatin1Char(' ')));
    return list;
}

void takeColumns(const QVector<QVariant> &row, TableFacts &facts)
{
    facts.packetBytes = row.at(2).toLongLong();
    facts.isReadOnly = row.at(5).toBool();
    if (!row.at(3).isNull())
        facts.dataBytes = row.at(3).toLongLong();
    for (const QStringList &words : listOf(row.at(4)))
        facts.lossyColumns.append({words.value(0), words.value(1), words.value(2)});
}

/// A key over several columns does not make the names unique.
bool isKeyOfName(const QVector<QVariant> &key)
{
    return key.at(1).toInt() == 1 &&
           key.at(0).toString().compare(QLatin1String("name"), Qt::CaseInsensitive) == 0;
}

QByteArray digestIn(const QVector<QVariant> &row)
{
    return row.at(0).toByteArray() + ' ' + row.at(1).toByteArray();
}

} // namespace

qint64 secondsSinceWritten(const QSqlDatabase &database, const char *table)
{
    QSqlQuery query = freshQuery(database);
    const bool isKnown =
        query.exec(QStringLiteral("SELECT UNIX_TIMESTAMP() - UNIX_TIMESTAMP(update_time) FROM "
                                  "information_schema.tables WHERE table_schema = DATABASE() AND "
                                  "table_name = '%1'")
                       .arg(QLatin1String(table))) &&
        query.next() && !query.isNull(0);
    return isKnown ? query.value(0).toLongLong() : std::numeric_limits<qint64>::max();
}

QStringList TableFacts::statements(const QStringList &tables)
{
    return {columnsStatement(tables), tablesStatement(tables), keysStatement()};
}

TableFacts TableFacts::of(const QVector<Answer> &answers)
{
    TableFacts facts;
    const auto columns = answers.at(0).rows;
    const auto tables = answers.at(1).rows;
    if (!columns.isEmpty())
        takeColumns(columns.first(), facts);
    if (!tables.isEmpty()) {
        for (const QStringList &words : listOf(tables.first().at(3)))
            facts.unsafeTables.append({words.value(0), words.value(1)});
    }
    for (const QVector<QVariant> &key : answers.at(2).rows)
        facts.isNameUnique |= isKeyOfName(key);
    const bool isKnown = !columns.isEmpty() && !tables.isEmpty();
    if (isKnown && tables.first().at(2).toInt() == 0)
        facts.digest = digestIn(columns.first()) + ' ' + digestIn(tables.first());
    return facts;
}
