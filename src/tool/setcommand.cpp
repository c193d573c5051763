#include "tool/commands.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/progress.h"
#include "tool/setoutcome.h"
#include "tool/setrequest.h"
#include "tool/storedsettings.h"
#include "tool/tool.h"

#include <QSqlError>

#include <algorithm>

#include <unistd.h>

namespace
{

/// A request and one of the schemas that it is for.
struct Target {
    QString token;
    const SetRequest *request;
};

/// Stores the values in a transaction, and rolls it back after an error. If the table has no
/// transactions, some values may stay stored. Returns the errors.
QStringList store(QSqlDatabase database, const VarsTable::Values &values)
{
    const bool open = database.transaction();
    QStringList errors;
    // Ends at the first error, because the server may have rolled the transaction back: the next
    // value would then be stored alone.
    for (auto value = values.cbegin(); value != values.cend() && errors.isEmpty(); ++value) {
        for (const Error &error : VarsTable(database).store({{value.key(), value.value()}}))
            errors.append(error.text.simplified());
    }
    if (open && !(errors.isEmpty() ? database.commit() : database.rollback()))
        errors.append(database.lastError().text().simplified());
    return errors;
}

/// Returns the stored settings of all reports, and the stored values of the keys in `changed`.
Result<VarsTable::Values> readBefore(const QSqlDatabase &database, const VarsTable::Values &changed)
{
    const VarsTable vars(database);
    auto found = vars.values(changed.keys());
    for (const ReportKind *kind : reportKinds()) {
        const auto ofKind = vars.valuesWithPrefix(QLatin1String(kind->prefix));
        if (!found.isOk() || !ofKind.isOk())
            return found.isOk() ? ofKind : found;
        VarsTable::Values all = found.value();
        for (auto entry = ofKind.value().cbegin(); entry != ofKind.value().cend(); ++entry)
            all.insert(entry.key(), entry.value());
        found = all;
    }
    return found;
}

QString nothingSet(const SchemaConnection &connection)
{
    return QStringLiteral("nothing was set in the database '%1'; see autoreport check")
        .arg(connection.databaseName);
}

/// Returns the settings that a failed request has changed. There may be some if the table has no
/// transactions.
QStringList changed(const VarsTable::Values &before, const VarsTable::Values &now)
{
    QStringList texts;
    for (auto entry = now.cbegin(); entry != now.cend(); ++entry) {
        if (before.value(entry.key()) != entry.value())
            texts.append(QStringLiteral("%1 = '%2'").arg(entry.key(), entry.value().toString()));
    }
    return texts;
}

/// Returns a sentence about what a failed request has changed. `before` has the previous values.
QString leftText(const SchemaConnection &connection, const VarsTable::Values &before,
                 const SetRequest &request)
{
    const auto now = VarsTable(connection.database()).values(request.values.keys());
    if (!now.isOk())
        return QStringLiteral("whether anything was set in the database '%1' is not known; see "
                              "autoreport status")
            .arg(connection.databaseName);
    const QStringList texts = changed(before, now.value());
    if (!texts.isEmpty())
        return QStringLiteral("only a part was set in the database '%1': %2; see autoreport check")
            .arg(connection.databaseName, texts.join(QStringLiteral(", ")));
    return nothingSet(connection);
}

/// Carries out requests, one schema after another, and counts the outcomes.
class Setter
{
public:
    Setter(const Invocation &commandLine, const Schemas &allSchemas, int targetCount)
        : invocation(commandLine)
        , schemas(allSchemas)
        , targets(targetCount)
        , isDryRun(commandLine.has("dry-run"))
    {
    }

    /// Returns whether the settings were stored. In a dry run, returns whether the previous
    /// values could be read.
    bool set(const Target &target)
    {
        using Access = SchemaConnection::Access;
        const SchemaConnection connection(schemas, target.token,
                                          isDryRun ? Access::ReadOnly : Access::ReadWrite);
        isReached = connection.error.isEmpty();
        if (!isReached) {
            Output::error(named(target, connection.error));
            return false;
        }
        // Reads the previous values first, so that nothing is written to a table that cannot be
        // read.
        const auto before = readBefore(connection.database(), target.request->values);
        QStringList errors =
            before.isOk() ? QStringList() : QStringList(before.error().simplified());
        if (before.isOk() && !isDryRun)
            errors = store(connection.database(), target.request->values);
        for (const QString &error : qAsConst(errors))
            Output::error(named(target, error));
        if (!errors.isEmpty()) {
            Output::error(named(target, before.isOk()
                                            ? leftText(connection, before.value(), *target.request)
                                            : nothingSet(connection)));
            return false;
        }
        show(target, before.value());
        return true;
    }

    /// Prints the summary of all schemas. Returns the exit status.
    int conclude(int done) const
    {
        if (waitingForScan > 0)
            Output::error(
                QStringLiteral("a host finds %1 at its next scan, within an hour; to scan now: "
                               "systemctl reload autoreport, or SIGHUP to autoreport serve")
                    .arg(targets == 1 ? QStringLiteral("the schema")
                                      : QStringLiteral("%1 of the schemas").arg(waitingForScan)));
        if (targets > 1)
            Output::print(QStringLiteral("%1 of %2 set%3")
                              .arg(QString::number(done), QString::number(targets), dryRunNote()));
        else if (isDryRun && done == 1)
            Output::print(QStringLiteral("not set%1").arg(dryRunNote()));
        if (targets == 1 && !isReached)
            return Tool::CouldNotAsk;
        return done == targets && forNobody == 0 ? Tool::Well : Tool::Look;
    }

private:
    QString named(const Target &target, const QString &text) const
    {
        return targets == 1 ? text : target.token + QStringLiteral(": ") + text;
    }

    QString dryRunNote() const
    {
        return isDryRun ? QStringLiteral(": a dry run, nothing was stored") : QString();
    }

    void show(const Target &target, const VarsTable::Values &before)
    {
        VarsTable::Values after = before;
        const VarsTable::Values &values = target.request->values;
        for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
            after.insert(entry.key(), entry.value());
            // The previous values are shown so that a mistake can be undone.
            const QString old =
                before.contains(entry.key())
                    ? QStringLiteral("'%1'").arg(before.value(entry.key()).toString())
                    : QStringLiteral("not set");
            Output::print(named(
                target,
                QStringLiteral("%1: %2 -> '%3'").arg(entry.key(), old, entry.value().toString())));
        }
        warn(target, before, after);
    }

    void warn(const Target &target, const VarsTable::Values &before, const VarsTable::Values &after)
    {
        const ReportKind &kind = *target.request->kind;
        const SetOutcome outcome(kind, before, after, QDateTime::currentDateTime());
        const QString report = target.token + QLatin1Char(' ') + QLatin1String(kind.word);
        if (outcome.isForNobody)
            Output::error(
                QStringLiteral("%1: it has no valid recipient: use --emails").arg(report));
        if (outcome.isDueNow)
            Output::error(QStringLiteral("%1: its time has passed, so it "
                                         "goes out at the next tick of a host")
                              .arg(report));
        forNobody += outcome.isForNobody ? 1 : 0;
        // In single-database mode there is no scan.
        waitingForScan += outcome.waitsForScan && !invocation.connection.single ? 1 : 0;
    }

    const Invocation &invocation;
    const Schemas &schemas;
    const int targets;
    const bool isDryRun;
    bool isReached = true; ///< whether the last schema could be opened
    int forNobody = 0;
    int waitingForScan = 0;
};

int setAll(const Invocation &invocation, const Schemas &schemas, const QVector<Target> &targets)
{
    Setter setter(invocation, schemas, targets.size());
    int done = 0;
    for (const Target &target : targets) {
        if (setter.set(target)) {
            ++done;
        } else if (targets.size() > 1 && !schemas.isAnswering()) {
            // All schemas are on this server: a timeout for each could take hours.
            setter.conclude(done);
            Output::error(QStringLiteral("the server no longer answers"));
            return Tool::CouldNotAsk;
        }
    }
    return setter.conclude(done);
}

/// Asks before all customers' settings are changed: settings can be restored, but mails cannot be
/// recalled.
bool isAgreed(const Invocation &invocation, const QVector<SetRequest> &requests, int targets)
{
    const bool isForAll = std::any_of(requests.cbegin(), requests.cend(),
                                      [](const SetRequest &one) { return one.isForAll; });
    if (!isForAll || invocation.has("yes") || invocation.has("dry-run"))
        return true;
    return Output::agrees(
        QStringLiteral("Set %1 reports of all schemas? --dry-run shows it first. [y/N] ")
            .arg(targets));
}

int runRequests(const Invocation &invocation, const Schemas &schemas,
                const QVector<SetRequest> &requests)
{
    const auto all = schemas.tokens();
    if (!all.isOk()) {
        Output::error(all.error().simplified());
        return Tool::CouldNotAsk;
    }
    // All tokens are looked up before anything is stored.
    QVector<Target> targets;
    for (const SetRequest &request : requests) {
        const QStringList tokens = request.isForAll ? all.value() : request.tokens;
        for (const QString &token : tokens) {
            if (!all.value().contains(token))
                return noSuchSchema(schemas, token);
            targets.append({token, &request});
        }
    }
    if (!isAgreed(invocation, requests, targets.size())) {
        Output::error(QStringLiteral("nothing was set"));
        return Tool::Look;
    }
    return setAll(invocation, schemas, targets);
}

} // namespace

void describeSet(QCommandLineParser &parser)
{
    describeSetRequests(parser);
    parser.addOption({QStringLiteral("file"),
                      QStringLiteral("Carry out each line of this file, - for standard "
                                     "input: \"TOKEN... daily --time 07:00\"."),
                      QStringLiteral("file")});
    parser.addOption(
        {QStringLiteral("dry-run"), QStringLiteral("Show what would be set, and store nothing.")});
    parser.addOption({QStringLiteral("yes"), QStringLiteral("Set --all without asking.")});
}

int runSet(const Invocation &invocation)
{
    const SetRequests requests(invocation);
    if (!requests.error.text.isEmpty())
        return invocation.wrong(requests.error.text, requests.error.meant);
    const bool isForAll = std::any_of(requests.list.cbegin(), requests.list.cend(),
                                      [](const auto &request) { return request.isForAll; });
    const bool canAsk =
        Output::isTerminal(STDIN_FILENO) && invocation.value("file") != QLatin1String("-");
    if (isForAll && !canAsk && !invocation.has("yes") && !invocation.has("dry-run"))
        return invocation.wrong(
            QStringLiteral("cannot ask without a terminal: give --yes, or --dry-run"));
    return onSchemas(invocation, [&](const Schemas &schemas) {
        return runRequests(invocation, schemas, requests.list);
    });
}
