#include "tool/schemacheck.h"

#include "common/freshquery.h"
#include "common/zas.h"
#include "db/varstable.h"
#include "tool/clustercheck.h"
#include "tool/requirements.h"
#include "tool/schemastatus.h"

#include <QSqlError>

namespace
{

using Row = QVector<QVariant>;

constexpr qint64 attachmentBytes = 16777215; // a MEDIUMBLOB; a BLOB would cut off every workbook

/// Returns no rows if the statement fails.
QVector<Row> rowsOf(const QSqlDatabase &database, const QString &statement, int columns)
{
    QVector<Row> rows;
    QSqlQuery query = freshQuery(database);
    query.exec(statement);
    while (query.next()) {
        Row row;
        for (int column = 0; column < columns; ++column)
            row.append(query.value(column));
        rows.append(row);
    }
    return rows;
}

/// Reports an error once even if both reports have it.
void checkTables(const QSqlDatabase &database, const QVector<const ReportKind *> &enabled,
                 Findings &findings)
{
    QStringList errors;
    for (const ReportKind *kind : enabled)
        errors += Requirements::unreadable(database, *kind);
    errors.removeDuplicates();
    for (const QString &error : qAsConst(errors))
        findings.problem(error, QStringLiteral("bring the schema up to the product's version, or "
                                               "grant SELECT on it"));
    // Missing columns have to be added before rights matter.
    if (!errors.isEmpty())
        return;
    for (const QString &error : Requirements::unwritable(database))
        findings.problem(error,
                         QStringLiteral("grant INSERT and UPDATE on vars, INSERT on emails"));
}

/// Checks what "all mails and lastGenerated, or nothing" and "once a day" depend on.
void checkStorage(const QSqlDatabase &database, Findings &findings)
{
    const auto engines =
        rowsOf(database,
               QStringLiteral("SELECT table_name, engine FROM information_schema.tables WHERE "
                              "table_schema = DATABASE() AND table_name IN ('vars', 'emails') AND "
                              "engine != 'InnoDB'"),
               2);
    for (const Row &row : engines)
        findings.problem(
            QStringLiteral("table %1 uses the engine %2, without transactions: mails and "
                           "lastGenerated could get out of step")
                .arg(row.at(0).toString(), row.at(1).toString()),
            QStringLiteral("ALTER TABLE %1 ENGINE=InnoDB").arg(row.at(0).toString()));

    // A key over several columns allows a name twice.
    const auto keys = rowsOf(
        database,
        QStringLiteral("SELECT index_name FROM information_schema.statistics WHERE table_schema = "
                       "DATABASE() AND table_name = 'vars' AND non_unique = 0 GROUP BY index_name "
                       "HAVING COUNT(*) = 1 AND MAX(column_name) = 'name'"),
        1);
    if (keys.isEmpty())
        findings.problem(QStringLiteral("vars.name is not unique: each report adds a row "
                                        "lastGenerated, and goes out again every minute"),
                         QStringLiteral("ALTER TABLE vars ADD UNIQUE KEY (name)"));
}

/// Checks that the columns can hold all characters and whole attachments.
void checkColumns(const QSqlDatabase &database, Findings &findings)
{
    const auto columns = rowsOf(
        database,
        QStringLiteral("SELECT table_name, column_name, character_set_name FROM "
                       "information_schema.columns WHERE table_schema = DATABASE() AND "
                       "character_set_name NOT LIKE 'utf8%' AND (table_name, column_name) IN "
                       "(('emails', 'subject'), ('emails', 'body'), ('emails', 'to'), "
                       "('vars', 'value'), ('people', 'name'), ('people', 'surname'))"),
        3);
    for (const Row &row : columns)
        findings.problem(QStringLiteral("%1.%2 is in %3, which cannot store all characters")
                             .arg(row.at(0).toString(), row.at(1).toString(), row.at(2).toString()),
                         QStringLiteral("ALTER TABLE %1 CONVERT TO CHARACTER SET utf8mb4")
                             .arg(row.at(0).toString()));

    const auto data = rowsOf(
        database,
        QStringLiteral("SELECT character_maximum_length FROM information_schema.columns WHERE "
                       "table_schema = DATABASE() AND table_name = 'emails' AND column_name = "
                       "'data'"),
        1);
    if (!data.isEmpty() && data.at(0).at(0).toLongLong() < attachmentBytes)
        findings.problem(QStringLiteral("emails.data holds %1 bytes, too few for workbooks")
                             .arg(data.at(0).at(0).toString()),
                         QStringLiteral("ALTER TABLE emails MODIFY data LONGBLOB"));
}

/// Checks that queued mails can be fetched, and that new ones have a sender.
void checkMails(const QSqlDatabase &database, Findings &findings)
{
    // The sender fetches a mail in one packet; escaped in a dump, it takes up to twice the size.
    const auto sizes = rowsOf(database,
                              QStringLiteral("SELECT MAX(LENGTH(data)), @@max_allowed_packet FROM "
                                             "emails WHERE status = 'Q'"),
                              2);
    if (!sizes.isEmpty() && 2 * sizes.at(0).at(0).toLongLong() > sizes.at(0).at(1).toLongLong())
        findings.problem(QStringLiteral("the largest queued mail has %1 bytes, the server takes "
                                        "%2 at a time")
                             .arg(sizes.at(0).at(0).toString(), sizes.at(0).at(1).toString()),
                         QStringLiteral("set max_allowed_packet to at least twice the mail"));

    // A missing one has a default. With an empty one, no mail is queued.
    const auto read = VarsTable(database).value(QStringLiteral("globalEmail"));
    const QVariant sender = read.isOk() ? read.value().value_or(QVariant()) : QVariant();
    if (sender.isValid() && !ZAS::validEmail(sender.toString()))
        findings.problem(QStringLiteral("the sender, globalEmail, is not a mail address: '%1'")
                             .arg(sender.toString()),
                         QStringLiteral("correct globalEmail in the table vars, or delete it"));
}

/// Without the privilege PROCESS, an account sees its own connections: those of the hosts.
void checkHosts(const QSqlDatabase &database, Findings &findings)
{
    const auto machines =
        rowsOf(database,
               QStringLiteral("SELECT DISTINCT IF(host LIKE '%:%', LEFT(host, LENGTH(host) - "
                              "LENGTH(SUBSTRING_INDEX(host, ':', -1)) - 1), host) FROM "
                              "information_schema.processlist WHERE db = DATABASE() AND id <> "
                              "CONNECTION_ID() ORDER BY 1"),
               1);
    QStringList names;
    for (const Row &row : machines)
        names.append(row.at(0).toString());
    if (names.size() > 1)
        findings.notice(QStringLiteral("connections from several machines: %1")
                            .arg(names.join(QStringLiteral(", "))),
                        QStringLiteral("if autoreport serve runs on more than one of them, stop it "
                                       "on the others; until then no report goes out twice"));
}

} // namespace

SchemaCheck checkSchema(const Schemas &schemas, const QString &token)
{
    Findings findings(token);
    const SchemaConnection connection(schemas, token, SchemaConnection::Access::ReadWrite);
    if (!connection.error.isEmpty()) {
        findings.problem(
            connection.error,
            QStringLiteral("correct its row in the table schemas, or grant the access"));
        return {findings.list, false, false};
    }
    const QSqlDatabase database = connection.database();
    QVector<const ReportKind *> enabled;
    for (const ReportKind *kind : reportKinds()) {
        const auto stored = StoredSettings::read(database, *kind);
        // Without the settings it is unknown what else the schema needs.
        if (!stored.isOk()) {
            findings.problem(stored.error(),
                             QStringLiteral("bring the schema up to the product's version, or "
                                            "grant SELECT on it"));
            break;
        }
        if (stored.value().settings.enabled)
            enabled.append(kind);
    }
    // A customer without reports does not need these.
    if (!enabled.isEmpty()) {
        checkTables(database, enabled, findings);
        checkStorage(database, findings);
        checkColumns(database, findings);
        checkMails(database, findings);
        checkPackets(database, findings);
        checkClusterTables(database, findings);
        checkHosts(database, findings);
    }
    // A check cannot tell a failed statement from one without rows.
    const bool isComplete = freshQuery(database).exec(QStringLiteral("DO 0"));
    if (!isComplete)
        findings.problem(QStringLiteral("the connection was lost, or an answer took too long"),
                         QStringLiteral("check it again, with a longer --timeout"));
    return {findings.list, !enabled.isEmpty(), isComplete};
}
