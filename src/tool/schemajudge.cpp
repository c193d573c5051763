#include "tool/schemajudge.h"

#include "common/freshquery.h"
#include "tool/clustercheck.h"
#include "tool/hostchecks.h"
#include "tool/machine.h"
#include "tool/queuedcheck.h"
#include "tool/reporthistory.h"
#include "tool/requirements.h"
#include "tool/statementpacket.h"
#include "tool/tablechecks.h"

#include <algorithm>

namespace
{

constexpr qint64 clockToleranceSeconds = 300; // for hosts with slightly different clocks

QString setCommand(const QString &token, const ReportKind &kind, const char *option)
{
    return QStringLiteral("autoreport set %1 %2 %3")
        .arg(token, QLatin1String(kind.word), QLatin1String(option));
}

void checkSwitch(const ReportKind &kind, const StoredSettings &stored, bool isSchemaFound,
                 Findings &findings)
{
    const QString remedy = setCommand(findings.subject, kind, "--enable");
    if (!stored.settings.enabled)
        findings.add(Gravity::Off, "off", QStringLiteral("it is disabled"), remedy);
    else if (!isSchemaFound)
        findings.add(Gravity::Obstacle, "switch",
                     QStringLiteral("enabled is '%1', but a host's scan requires exactly 1")
                         .arg(stored.text("enabled")),
                     remedy);
    else if (!stored.isFoundByScan())
        findings.add(Gravity::Harm, "switch",
                     QStringLiteral("enabled is '%1', but a host's scan requires exactly 1 "
                                    "and finds the schema only by its other report")
                         .arg(stored.text("enabled")),
                     remedy);
}

void checkRecipients(const ReportKind &kind, const StoredSettings &stored, Findings &findings)
{
    const Recipients recipients(stored.settings.recipients);
    const QString remedy = setCommand(findings.subject, kind, "--emails LIST");
    if (recipients.wellFormed.isEmpty())
        findings.add(
            Gravity::Obstacle, "recipients",
            QStringLiteral("it has no valid recipient: emails is '%1'").arg(stored.text("emails")),
            remedy);
    else if (!recipients.malformed.isEmpty())
        findings.add(Gravity::Harm, "recipients",
                     QStringLiteral("not a mail address: %1")
                         .arg(recipients.malformed.join(QStringLiteral(", "))),
                     remedy);
}

void checkTimes(const ReportKind &kind, const StoredSettings &stored, const QDateTime &now,
                Findings &findings)
{
    if (stored.settings.lastGenerated > now.toSecsSinceEpoch() + clockToleranceSeconds)
        findings.add(
            Gravity::Obstacle, "future",
            QStringLiteral("lastGenerated is in the future; a clock was wrong"),
            QStringLiteral(
                "correct the clock, then set lastGenerated in the table vars to the time of "
                "the last report"));
    const QString time = stored.text("time");
    if (!stored.settings.time.isValid() && !time.isEmpty())
        findings.add(
            Gravity::Harm, "time",
            QStringLiteral("'%1' is not a time of day: the report goes out at midnight").arg(time),
            setCommand(findings.subject, kind, "--time HH:MM"));
}

bool isFoundByScan(const QVector<StoredSettings> &all)
{
    return std::any_of(all.cbegin(), all.cend(),
                       [](const StoredSettings &one) { return one.isFoundByScan(); });
}

void sort(QVector<Finding> &findings)
{
    std::stable_sort(
        findings.begin(), findings.end(),
        [](const Finding &left, const Finding &right) { return left.gravity > right.gravity; });
}

} // namespace

QString stateOf(const QVector<Finding> &findings)
{
    const auto problem = std::find_if(findings.cbegin(), findings.cend(),
                                      [](const Finding &one) { return one.isProblem(); });
    if (problem != findings.cend())
        return problem->state;
    const bool isNotable = !findings.isEmpty() && findings.first().gravity != Gravity::Notice;
    return isNotable ? findings.first().state : QStringLiteral("well");
}

bool SchemaJudgement::hasProblem() const
{
    const auto isProblem = [](const Finding &one) {
        return one.isProblem();
    };
    return std::any_of(findings.cbegin(), findings.cend(), isProblem) ||
           std::any_of(reports.cbegin(), reports.cend(), [&](const ReportJudgement &report) {
               return std::any_of(report.findings.cbegin(), report.findings.cend(), isProblem);
           });
}

bool SchemaJudgement::isEnabled() const
{
    return std::any_of(reports.cbegin(), reports.cend(), [](const ReportJudgement &report) {
        return report.stored.settings.enabled;
    });
}

/// What is read once for all reports of a schema.
struct SchemaJudge::TablesJudged {
    SchemaTables found;
    Findings findings; ///< about all reports of the schema
    QVector<ReportReading> readings;
    qint64 secondsSinceListed; ///< as in SchemaRow
};

SchemaJudge::SchemaJudge(const Machine &hosts, const QDateTime &moment, Scope judged)
    : machine(hosts)
    , now(moment)
    , scope(judged)
    , window(std::make_unique<HistoryWindow>(moment))
{
}

SchemaJudge::~SchemaJudge() = default;

SchemaJudgement SchemaJudge::judge(const SchemaRow &row) const
{
    SchemaJudgement schema;
    schema.token = row.token;
    schema.databaseName = row.options.databaseName;
    Findings findings(row.token);
    if (row.status != 1) {
        findings.add(Gravity::Off, "inactive",
                     QStringLiteral("the schema is not active: status is %1 in the table schemas")
                         .arg(row.status),
                     QStringLiteral("set status to 1 if the customer is to be served"));
    } else if (!row.error().isEmpty()) {
        findings.add(Gravity::Obstacle, "incomplete", row.error(),
                     QStringLiteral("complete its row in the table schemas"));
    } else {
        schema.isTried = true;
        const SchemaConnection connection(row);
        schema.isOpened = connection.error.isEmpty();
        if (schema.isOpened)
            judgeOpened(connection.database(), row, schema, findings);
        else
            findings.add(Gravity::Obstacle, "unreachable", connection.error,
                         QStringLiteral("correct its row in the table schemas, or grant access"));
    }
    schema.findings = findings.list;
    return schema;
}

void SchemaJudge::judgeOpened(const QSqlDatabase &database, const SchemaRow &row,
                              SchemaJudgement &schema, Findings &findings) const
{
    const auto answers = answersTo(database, {SchemaSettings::statement(), queueStatement()});
    if (answers.at(0).isOk()) {
        judgeReports(database, SchemaSettings::of(answers.at(0).rows), answers.at(1), row, schema);
    } else {
        const QSqlError &error = answers.at(0).error;
        const bool isForbidden = Requirements::isMissingRight(error.nativeErrorCode());
        findings.add(Gravity::Obstacle, isForbidden ? "rights" : "tables",
                     QStringLiteral("the settings cannot be read: ") + error.text().simplified(),
                     isForbidden ? QStringLiteral("GRANT SELECT ON `%1`.`vars` TO the account '%2'")
                                       .arg(database.databaseName(), database.userName())
                                 : QStringLiteral("restore the table vars"));
    }
    // The checks treat a failed statement like one without rows, so test that the connection still
    // works.
    schema.isComplete = freshQuery(database).exec(QStringLiteral("DO 0"));
    if (schema.isComplete)
        return;
    schema.reports.clear();
    findings.list.clear();
    findings.add(Gravity::Obstacle, "silent",
                 QStringLiteral("the connection was lost, or an answer took too long"),
                 QStringLiteral("try again with a longer --timeout"));
}

bool SchemaJudge::isJudged(const StoredSettings &stored) const
{
    return stored.settings.enabled || scope == Scope::AllReports;
}

void SchemaJudge::judgeReports(const QSqlDatabase &database, const SchemaSettings &settings,
                               const Answer &queue, const SchemaRow &row,
                               SchemaJudgement &schema) const
{
    Findings ofQueue(row.token);
    const MailSizes sizes = checkQueue(database, queue, schema, ofQueue);
    TablesJudged tables{{}, Findings(row.token), {}, row.secondsSinceListed};
    if (std::any_of(settings.reports.cbegin(), settings.reports.cend(),
                    [this](const StoredSettings &stored) { return isJudged(stored); }))
        judgeTables(database, settings, sizes, tables);
    const bool isFound = row.options.single || isFoundByScan(settings.reports);
    for (int i = 0; i < settings.reports.size(); ++i) {
        const StoredSettings &stored = settings.reports.at(i);
        const ReportKind &kind = *reportKinds().at(i);
        Findings findings(row.token);
        checkSwitch(kind, stored, isFound, findings);
        if (isJudged(stored))
            judgeReport(database, kind, stored, tables, findings);
        findings.list += ofQueue.list; // queued mails have to go out even if the report is disabled
        sort(findings.list);
        schema.reports.append({&kind, stored, nextDue(stored.settings, now), findings.list});
    }
}

void SchemaJudge::judgeTables(const QSqlDatabase &database, const SchemaSettings &settings,
                              const MailSizes &sizes, TablesJudged &tables) const
{
    for (int i = 0; i < settings.reports.size(); ++i) {
        const ReportKind *kind = reportKinds().at(i);
        if (isJudged(settings.reports.at(i)))
            tables.readings.append({kind, kind->needs(settings.options, now.date())});
    }
    tables.found = SchemaTables::read(database, tables.readings);
    judgeReading(database, settings, tables);
    checkTables(database, settings.sender, tables.found, tables.findings);
    checkPackets(sizes, tables.findings);
    if (scope == Scope::Problems)
        return;
    checkClusterTables(database, tables.findings);
    checkMachines(database, tables.findings);
}

/// If the same statements could be prepared for an earlier schema with an equal TableFacts::digest,
/// and this schema's reports went out, only `check` and `why` prepare the statements again, to find
/// damaged tables.
void SchemaJudge::judgeReading(const QSqlDatabase &database, const SchemaSettings &settings,
                               TablesJudged &tables) const
{
    const QByteArray &digest = tables.found.facts.digest;
    const QStringList statements = readingStatements(tables.readings);
    const bool areCounted =
        std::none_of(tables.readings.cbegin(), tables.readings.cend(),
                     [](const ReportReading &reading) { return reading.rows < 0; });
    if (scope == Scope::Problems && areCounted && prepared.contains(digest, statements) &&
        didAllGoOut(settings, tables.findings.subject))
        return;
    if (prepareAll(database, tables.readings))
        prepared.insert(digest, statements);
}

bool SchemaJudge::didAllGoOut(const SchemaSettings &settings, const QString &token) const
{
    for (int i = 0; i < settings.reports.size(); ++i) {
        const ReportSettings &report = settings.reports.at(i).settings;
        if (report.enabled && !wentOut(*reportKinds().at(i), report, machine, token, now))
            return false;
    }
    return true;
}

void SchemaJudge::judgeReport(const QSqlDatabase &database, const ReportKind &kind,
                              const StoredSettings &stored, const TablesJudged &tables,
                              Findings &findings) const
{
    checkRecipients(kind, stored, findings);
    checkTimes(kind, stored, now, findings);
    findings.list += tables.findings.list;
    for (const ReportReading &reading : tables.readings) {
        if (reading.kind == &kind)
            checkReport(database, reading, machine, tables.found.facts, findings);
    }
    // If something keeps the report back, do not add that it is overdue or has failed: the cause is
    // the same.
    const bool isKeptBack = std::any_of(findings.list.cbegin(), findings.list.cend(),
                                        [](const Finding &finding) { return finding.keepsBack(); });
    const auto sinceChange = [&] {
        return std::min(tables.secondsSinceListed, secondsSinceWritten(database, "vars"));
    };
    if (isKeptBack)
        return;
    const int before = findings.list.size();
    checkHosts(kind, stored, machine, now, sinceChange, findings);
    if (findings.list.size() == before && stored.settings.enabled)
        checkQueued(database, kind, stored.settings, machine, *window, findings);
}
