#include "tool/tool.h"

#include "options/language.h"
#include "options/optionreader.h"
#include "options/usage.h"
#include "tool/commands.h"
#include "tool/invocation.h"
#include "tool/messages.h"
#include "tool/output.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace
{

/// The arguments that a command takes after its name.
enum class Takes { Nothing, PerhapsToken, Report, ManyReports };

struct Command {
    const char *name;
    Takes takes;
    const char *purpose;
    const char *example;
    void (*describe)(QCommandLineParser &);
    int (*run)(const Invocation &);
};

constexpr int maxTimeoutSeconds = 3600;

/// All commands but `serve`. Help, dispatch and positional arguments follow from this table.
constexpr std::array commands{
    Command{"status", Takes::Nothing, "Shows whether each report went out.",
            "autoreport status\n  autoreport status --schema kovo --json", describeStatus,
            runStatus},
    Command{"history", Takes::PerhapsToken,
            "Shows which reports of the last 31 days were queued and sent, day by day.",
            "autoreport history\n  autoreport history kovo\n"
            "  autoreport history --html reports.html",
            describeHistory, runHistory},
    Command{"why", Takes::Report,
            "Explains why a report is due or not, rule by rule, and when it will be.",
            "autoreport why kovo daily\n  autoreport why kovo daily --at \"2026-12-24 07:00\"",
            describeWhy, runWhy},
    Command{"preview", Takes::Report,
            "Writes a report's workbook to a file; nothing is queued or stored.",
            "autoreport preview kovo daily --out kovo.xlsx\n"
            "  autoreport preview kovo monthly --date 2026-10-31 --out october.xls",
            describePreview, runPreview},
    Command{"run", Takes::Report, "Queues a report now, due or not.",
            "autoreport run kovo daily --to me@example.com\n"
            "  autoreport run kovo daily --mark --yes",
            describeRun, runRun},
    Command{"set", Takes::ManyReports, "Changes a report's settings and shows the previous values.",
            "autoreport set kovo daily --enable --time 07:00 \\\n"
            "      --emails payroll@example.com,boss@example.com\n"
            "  autoreport set --all monthly --disable --dry-run",
            describeSet, runSet},
    Command{"check", Takes::PerhapsToken,
            "Checks the installation and says how to fix what is wrong.",
            "autoreport check\n  autoreport check kovo", describeCheck, runCheck},
};

const Command *find(const QString &name)
{
    const auto *found = std::find_if(commands.begin(), commands.end(), [&name](const Command &one) {
        return name == QLatin1String(one.name);
    });
    return found == commands.end() ? nullptr : found;
}

/// Returns the names of the command's arguments, such as "TOKEN" and "daily|monthly".
QStringList argumentNames(const Command &command)
{
    const QString words = reportWords().join(QLatin1Char('|'));
    switch (command.takes) {
    case Takes::Nothing:
        break;
    case Takes::PerhapsToken:
        return {QStringLiteral("[TOKEN]")};
    case Takes::Report:
        return {QStringLiteral("TOKEN"), words};
    case Takes::ManyReports:
        return {QStringLiteral("TOKEN..."), words};
    }
    return {};
}

QString synopsis(const Command &command)
{
    return (QStringList{QStringLiteral("autoreport"), QLatin1String(command.name)} +
            argumentNames(command) + QStringList(QStringLiteral("[options]")))
        .join(QLatin1Char(' '));
}

void describe(const Command &command, QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("%1\n\nExample:\n  %2")
            .arg(QLatin1String(command.purpose), QLatin1String(command.example)));
    parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help.")});
    parser.addPositionalArgument(QLatin1String(command.name), {}, QLatin1String(command.name));
    const QStringList names = argumentNames(command);
    for (const QString &name : names)
        parser.addPositionalArgument(
            name,
            name.contains(QLatin1String("TOKEN"))
                ? QStringLiteral("The schema's token or, with --single, the name of the database.")
                : QStringLiteral("Which report."));
    command.describe(parser);
    parser.addOption(
        {QStringLiteral("timeout"),
         QStringLiteral("Limit for connecting and for each answer of the server. Default: 10."),
         QStringLiteral("seconds"), QStringLiteral("10")});
    OptionReader::describe(parser);
}

/// Sets the schema and the report from the positional arguments. Returns the error, whose text is
/// empty if there is none.
UsageError readArguments(const Command &command, Invocation &invocation)
{
    const QStringList given = invocation.parser.positionalArguments().mid(1);
    const int expected = argumentNames(command).size();
    invocation.arguments = given;
    invocation.token = given.value(0);
    if (command.takes == Takes::ManyReports) // the command reads its arguments itself
        return {};
    if (given.size() > expected)
        return {QStringLiteral("unexpected argument '%1'").arg(given.at(expected))};
    // An empty token is probably a script's mistake. It must not select all schemas.
    if (!given.isEmpty() && invocation.token.isEmpty())
        return {QStringLiteral("the schema's token is empty")};
    if (command.takes != Takes::Report)
        return {};
    if (given.size() < expected)
        return {QStringLiteral("the schema or the report is missing")};
    UsageError error;
    invocation.kind = readReport(given.last(), error);
    return error;
}

int runCommand(const Command &command, Invocation &invocation)
{
    const UsageError error = readArguments(command, invocation);
    if (!error.text.isEmpty())
        return invocation.wrong(error.text, error.meant);
    OptionReader reader(invocation.parser);
    invocation.connection = reader.connection();
    invocation.connection.timeoutSeconds = reader.number("timeout", 1, maxTimeoutSeconds);
    if (reader.error.isEmpty())
        invocation.connection.password = reader.password();
    const QString language = reader.language();
    // The common options are checked before the first connection attempt.
    if (reader.error.isEmpty()) {
        Language::install(language);
        // From here on, warnings are collected for the command to print.
        const Messages messages;
        const int status = command.run(invocation);
        // If the command has left warnings unprinted, success becomes Look.
        return Messages::print() && status == Tool::Well ? Tool::Look : status;
    }
    if (reader.isUsage)
        return invocation.wrong(reader.error);
    Output::error(reader.error);
    return Tool::CouldNotAsk;
}

/// Prints the command's help, or runs it.
int helpOrRun(const Command &command, const QStringList &arguments)
{
    QCommandLineParser parser;
    describe(command, parser);
    Invocation invocation(parser, synopsis(command));
    if (!parser.parse(arguments)) {
        const UsageError error = Usage::parserError(parser);
        return invocation.wrong(error.text, error.meant);
    }
    if (invocation.has("help")) {
        Output::print(parser.helpText().trimmed().split(QLatin1Char('\n')));
        return Tool::Well;
    }
    return runCommand(command, invocation);
}

} // namespace

QString Tool::commandIn(const QStringList &arguments)
{
    // Connection options may precede the command. Errors in options are ignored here, because run()
    // reports them.
    QCommandLineParser parser;
    OptionReader::describe(parser);
    parser.parse(arguments);
    const QString first = parser.positionalArguments().value(0);
    return find(first) ? first : QString();
}

QStringList Tool::commandNames()
{
    QStringList names;
    for (const Command &command : commands)
        names.append(QLatin1String(command.name));
    return names;
}

QString Tool::commandHelp()
{
    QString text;
    for (const Command &command : commands) {
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -8)
                    .arg(QLatin1String(command.purpose));
    }
    return text;
}

int Tool::run(const QString &name, const QStringList &arguments)
{
    // Without TZ, the C library checks the time zone's file at each conversion, hundreds of times
    // per schema. A host needs this check to follow a change of the time zone; a command does not.
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
    const int status = helpOrRun(*find(name), arguments);
    // A monitor must not mistake incomplete output for success.
    return !Output::flush() && status == Well ? Look : status;
}
