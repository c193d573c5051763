#include "tool/tablechecks.h"

#include "common/freshquery.h"
#include "common/zas.h"
#include "db/mailrepository.h"
#include "db/varstable.h"
#include "reports/bookformat.h"
#include "tool/machine.h"
#include "tool/schemajudge.h"
#include "tool/statementpacket.h"

#include <algorithm>

namespace
{

using Row = QVector<QVariant>;

constexpr qint64 attachmentBytes = 16777215;  // a MEDIUMBLOB; a BLOB would cut off most workbooks
constexpr qint64 queuePatienceSeconds = 3600; // the sender normally takes minutes
// Lower bounds for both formats: if even these are too large, so is the workbook.
constexpr qint64 leastBytesPerRow = 20;
constexpr qint64 leastBytes = 4096;

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

const char *stateOf(const UnmetRequirement &unmet)
{
    return unmet.isForbidden ? "rights" : "tables";
}

/// Returns the right to grant, or how to get a missing table or column.
QString remedyOf(const UnmetRequirement &unmet, const char *rights, const QSqlDatabase &database)
{
    if (!unmet.isForbidden)
        return QStringLiteral(
            "update the schema to the product's version, which has the missing tables "
            "and columns");
    QStringList tables;
    for (const QString &table : unmet.tables)
        tables.append(QStringLiteral("`%1`.`%2`").arg(database.databaseName(), table));
    return QStringLiteral("GRANT %1 ON %2 TO the account '%3'")
        .arg(QLatin1String(rights), tables.join(QStringLiteral(", ")), database.userName());
}

void checkRights(const QSqlDatabase &database, const SchemaTables &tables, Findings &findings)
{
    if (tables.unqueuable)
        findings.add(Gravity::Obstacle, stateOf(*tables.unqueuable),
                     QStringLiteral("no mail can be queued: ") + tables.unqueuable->text,
                     remedyOf(*tables.unqueuable, "INSERT", database));
    if (tables.unmarkable)
        findings.add(
            tables.unqueuable ? Gravity::Obstacle : Gravity::Alarm, stateOf(*tables.unmarkable),
            (tables.unqueuable ? QStringLiteral("lastGenerated cannot be stored: ")
                               : QStringLiteral("lastGenerated cannot be stored, and "
                                                "everybody is mailed again every minute: ")) +
                tables.unmarkable->text,
            remedyOf(*tables.unmarkable, "INSERT, UPDATE", database));
}

/// Tries an UPDATE that changes no row, because some accounts may write even if the server is
/// read-only.
void checkReadOnly(const QSqlDatabase &database, Findings &findings)
{
    QSqlQuery query = freshQuery(database);
    const bool isAccepted = query.exec(QStringLiteral("UPDATE vars SET value = value WHERE FALSE"));
    if (!isAccepted && query.lastError().nativeErrorCode() == QLatin1String("1290"))
        findings.add(Gravity::Obstacle, "readonly",
                     QStringLiteral("the server is read-only (read_only is 1), and the account "
                                    "'%1' is not exempt")
                         .arg(database.userName()),
                     QStringLiteral("use the server that accepts writes, or SET GLOBAL read_only "
                                    "= 0"));
}

/// Adds a finding about the missing unique key, without which a report may go out more than once a
/// day.
void checkNames(const QSqlDatabase &database, Findings &findings)
{
    const auto views = rowsOf(database,
                              QStringLiteral("SELECT 1 FROM information_schema.tables WHERE "
                                             "table_schema = DATABASE() AND table_name = 'vars' "
                                             "AND table_type = 'VIEW'"),
                              1);
    if (!views.isEmpty())
        return findings.add(Gravity::Notice, "storage",
                            QStringLiteral("vars is a view, which does not show whether each name "
                                           "is unique"),
                            QStringLiteral("make sure that the table behind it has a unique key "
                                           "over the names"));
    const auto twice = rowsOf(database,
                              QStringLiteral("SELECT name FROM vars GROUP BY name HAVING COUNT(*) "
                                             "> 1 ORDER BY name LIMIT 1"),
                              1);
    const QString key = QStringLiteral("ALTER TABLE vars ADD UNIQUE KEY (name)");
    findings.add(Gravity::Harm, "storage",
                 QStringLiteral("vars.name is not unique: each report adds a row lastGenerated, "
                                "and which one counts is left to chance"),
                 twice.isEmpty() ? key
                                 : QStringLiteral("'%1' has several rows: keep one row of each "
                                                  "name, then %2")
                                       .arg(twice.first().first().toString(), key));
}

/// Checks for transactions, which keep mails and "lastGenerated" in step, and for unique names.
void checkStorage(const QSqlDatabase &database, const TableFacts &facts, Findings &findings)
{
    for (const TableFacts::Table &table : facts.unsafeTables)
        findings.add(Gravity::Harm, "storage",
                     QStringLiteral("table %1 uses the engine %2, without transactions: mails and "
                                    "lastGenerated could get out of step")
                         .arg(table.name, table.engine),
                     QStringLiteral("ALTER TABLE %1 ENGINE=InnoDB").arg(table.name));
    if (!facts.isNameUnique)
        checkNames(database, findings);
}

/// Adds a finding for each column of names, mails or settings whose character set is not UTF-8.
void checkLetters(const TableFacts &facts, Findings &findings)
{
    for (const TableFacts::Column &column : facts.lossyColumns)
        findings.add(
            Gravity::Harm, "letters",
            QStringLiteral("%1.%2 is in %3, which cannot store all characters")
                .arg(column.table, column.name, column.characterSet),
            QStringLiteral("ALTER TABLE %1 CONVERT TO CHARACTER SET utf8mb4").arg(column.table));
}

/// Without a stored sender, a default is used. With an empty one, no mail is queued.
void checkSender(const QVariant &sender, Findings &findings)
{
    if (sender.isValid() && !ZAS::validEmail(sender.toString()))
        findings.add(Gravity::Obstacle, "sender",
                     QStringLiteral("the sender globalEmail is not a mail address: '%1'")
                         .arg(sender.toString()),
                     QStringLiteral("correct globalEmail in the table vars, or delete it"));
}

/// Returns whether `unmet` is the statement that reads the people, without which the report cannot
/// be made. If any other statement fails, the report lacks only values.
bool isDecisive(const UnmetRequirement &unmet)
{
    return unmet.tables.value(0) == QLatin1String("people");
}

bool arePeopleReadable(const ReportReading &reading)
{
    return std::none_of(reading.unmet.cbegin(), reading.unmet.cend(), isDecisive);
}

std::optional<UnmetRequirement> unmetIn(const Answer &answer, const QString &statement)
{
    return answer.isOk() ? std::nullopt
                         : std::optional(Requirements::unmetBy(statement, answer.error));
}

void checkReading(const QSqlDatabase &database, const ReportReading &reading, Findings &findings)
{
    for (const UnmetRequirement &unmet : reading.unmet)
        findings.add(isDecisive(unmet) ? Gravity::Obstacle : Gravity::Harm, stateOf(unmet),
                     unmet.text, remedyOf(unmet, "SELECT", database));
}

void checkRows(int rows, const BookFormat &format, const ReportKind &kind, Findings &findings)
{
    if (rows == 0)
        findings.add(Gravity::Obstacle, "people",
                     QStringLiteral("no people are employed this month"),
                     QStringLiteral("check status, begin and end in the table people"));
    else if (rows >= format.rows)
        findings.add(
            Gravity::Obstacle, "rows",
            QStringLiteral("%1 rows are more than the %2 that %3 can hold")
                .arg(QString::number(rows), QString::number(format.rows - 1), format.extension),
            &format == &xlsxFormat
                ? QStringLiteral("no format can hold more: check who is active in the table people")
                : QStringLiteral("autoreport set %1 %2 --format xlsx")
                      .arg(findings.subject, QLatin1String(kind.word)));
}

void checkRoom(qint64 bytes, const Machine &machine, Findings &findings)
{
    if (!machine.temporaryError.isEmpty())
        findings.add(Gravity::Obstacle, "directory", machine.temporaryError,
                     machine.temporaryRemedy);
    else if (bytes > machine.temporaryFreeBytes)
        findings.add(Gravity::Obstacle, "directory",
                     QStringLiteral("the temporary directory '%1' has no room for %2 bytes")
                         .arg(machine.temporaryDirectory, QString::number(bytes)),
                     QStringLiteral("make room, or point TMPDIR of the host elsewhere"));
}

/// The workbook has at least `bytes`. The mail is larger, because its attachment is in Base64.
void checkMail(qint64 bytes, const TableFacts &limits, Findings &findings)
{
    const qint64 mail = bytes / 3 * 4;
    const QString mailText = QString::number(mail);
    if (mail > limits.packetBytes)
        findings.add(Gravity::Obstacle, "packet",
                     QStringLiteral("max_allowed_packet is %1, but a mail has %2 bytes or more")
                         .arg(QString::number(limits.packetBytes), mailText),
                     QStringLiteral("set max_allowed_packet to 64M on the server"));
    if (limits.dataBytes >= attachmentBytes)
        return;
    const QString holds =
        QStringLiteral("emails.data can hold %1 bytes, but ").arg(limits.dataBytes);
    const QString remedy = QStringLiteral("ALTER TABLE emails MODIFY data LONGBLOB");
    if (mail > limits.dataBytes)
        findings.add(Gravity::Obstacle, "size",
                     holds + QStringLiteral("a mail has %1 or more").arg(mailText), remedy);
    else
        findings.add(Gravity::Harm, "size", holds + QStringLiteral("workbooks need more"), remedy);
}

} // namespace

SchemaTables SchemaTables::read(const QSqlDatabase &database, QVector<ReportReading> &reports)
{
    const QString queueing = MailRepository::insertStatement();
    const QString marking = VarsTable::upsertStatement();
    QStringList statements{Requirements::preparation(database, queueing),
                           Requirements::preparation(database, marking)};
    for (const ReportReading &report : qAsConst(reports))
        statements.append(report.needs.countStatement);
    statements += TableFacts::statements(
        Requirements::tablesOf(readingStatements(reports) + QStringList{queueing, marking}));
    const QVector<Answer> answers = answersTo(database, statements);
    for (int i = 0; i < reports.size(); ++i) {
        const auto count = answers.at(2 + i).rows;
        reports[i].rows = count.isEmpty()
                              ? -1
                              : count.first().first().toInt() * reports.at(i).needs.rowsPerPerson;
    }
    return {TableFacts::of(answers.mid(2 + reports.size())), unmetIn(answers.at(0), queueing),
            unmetIn(answers.at(1), marking)};
}

QStringList readingStatements(const QVector<ReportReading> &reports)
{
    QStringList statements;
    for (const ReportReading &report : reports)
        statements += report.needs.statements;
    return statements;
}

bool prepareAll(const QSqlDatabase &database, QVector<ReportReading> &reports)
{
    if (Requirements::areReadable(database, readingStatements(reports)))
        return true;
    for (ReportReading &report : reports)
        report.unmet = Requirements::unmetOf(database, report.needs.statements);
    return false;
}

void checkTables(const QSqlDatabase &database, const QVariant &sender, const SchemaTables &tables,
                 Findings &findings)
{
    checkRights(database, tables, findings);
    checkSender(sender, findings);
    if (tables.facts.isReadOnly)
        checkReadOnly(database, findings);
    checkStorage(database, tables.facts, findings);
    checkLetters(tables.facts, findings);
}

QString queueStatement()
{
    // The last eight mails usually include both reports, unless one has eight recipients or more.
    return QStringLiteral("SELECT COUNT(*), UNIX_TIMESTAMP() - MIN(created), MAX(LENGTH(data)), "
                          "@@max_allowed_packet, (SELECT MAX(size) FROM (SELECT LENGTH(data) AS "
                          "size FROM emails ORDER BY mid DESC LIMIT 8) AS latest) FROM emails "
                          "WHERE status = 'Q'");
}

/// The age of the mails is by the server's clock, which stamped them. A missing right to read mails
/// is only a notice, because reports do not read them.
MailSizes checkQueue(const QSqlDatabase &database, const Answer &answer, SchemaJudgement &schema,
                     Findings &findings)
{
    if (answer.rows.isEmpty()) {
        findings.add(Gravity::Notice, "queue",
                     QStringLiteral("its mails cannot be counted: %1").arg(answer.error.text()),
                     remedyOf({{},
                               {QStringLiteral("emails")},
                               Requirements::isMissingRight(answer.error.nativeErrorCode())},
                              "SELECT", database));
        return {};
    }
    const QVector<QVariant> &row = answer.rows.first();
    schema.queued = row.at(0).toInt();
    schema.oldestSeconds = row.at(1).toLongLong();
    if (schema.queued > 0 && schema.oldestSeconds > queuePatienceSeconds)
        findings.add(Gravity::Harm, "queue",
                     QStringLiteral("mails have been waiting for over an hour"),
                     QStringLiteral("check that the product's sender works"));
    // A dump holds a mail in one statement, and escaping can double its size.
    const qint64 largest = row.at(2).toLongLong();
    const qint64 packet = row.at(3).toLongLong();
    if (2 * largest > packet)
        findings.add(
            Gravity::Harm, "packet",
            QStringLiteral("the largest queued mail has %1 bytes, more than half of the %2 "
                           "that the server accepts at a time")
                .arg(QString::number(largest), QString::number(packet)),
            QStringLiteral("set max_allowed_packet to at least twice the mail"));
    return {row.at(4).toLongLong(), packet};
}

void checkPackets(const MailSizes &sizes, Findings &findings)
{
    if (sizes.lastBytes * 2 <= sizes.packetBytes)
        return;
    findings.add(Gravity::Harm, "packet",
                 QStringLiteral("the largest of the last mails has %1 bytes, more than half of "
                                "the %2 that the server accepts at a time")
                     .arg(QString::number(sizes.lastBytes), QString::number(sizes.packetBytes)),
                 QStringLiteral("set max_allowed_packet to at least twice the mail: workbooks "
                                "grow until the month ends"));
}

/// An account without the privilege PROCESS sees only its own connections. That is enough,
/// because the hosts use the same account.
void checkMachines(const QSqlDatabase &database, Findings &findings)
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
        findings.add(Gravity::Notice, "machines",
                     QStringLiteral("connections from several machines: %1")
                         .arg(names.join(QStringLiteral(", "))),
                     QStringLiteral("if autoreport serve is meant to run on one of them only, stop "
                                    "it on the others; no report goes out twice"));
}

void checkReport(const QSqlDatabase &database, const ReportReading &reading, const Machine &machine,
                 const TableFacts &facts, Findings &findings)
{
    checkReading(database, reading, findings);
    if (arePeopleReadable(reading))
        checkRows(reading.rows, *reading.needs.format, *reading.kind, findings);
    const qint64 bytes = leastBytes + std::max(0, reading.rows) * leastBytesPerRow;
    checkRoom(bytes, machine, findings);
    checkMail(bytes, facts, findings);
}
