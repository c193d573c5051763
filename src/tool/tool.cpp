#include "tool/tool.h"

#include "options/language.h"
#include "options/optionreader.h"
#include "tool/commands.h"
#include "tool/invocation.h"
#include "tool/messages.h"
#include "tool/output.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace
{

struct Command {
    const char *name;
    bool takesReport; ///< whether it takes the arguments TOKEN and daily|monthly
    const char *purpose;
    const char *example;
    void (*describe)(QCommandLineParser &);
    int (*run)(const Invocation &);
};

constexpr int maxTimeoutSeconds = 3600;

/// All commands. Help, dispatch and positional arguments follow from this table.
constexpr std::array commands{
    Command{"status", false, "Shows whether each report went out.",
            "autoreport status\n  autoreport status --schema kovo --json", describeStatus,
            runStatus},
    Command{"why", true, "Explains why a report is due or not, rule by rule, and when it will be.",
            "autoreport why kovo daily\n  autoreport why kovo daily --at \"2026-12-24 07:00\"",
            describeWhy, runWhy},
    Command{"preview", true, "Writes a report's workbook to a file; nothing is queued or stored.",
            "autoreport preview kovo daily --out kovo.xlsx\n"
            "  autoreport preview kovo monthly --date 2026-10-31 --out october.xls",
            describePreview, runPreview},
    Command{"run", true, "Queues a report now, due or not.",
            "autoreport run kovo daily --to me@example.com\n"
            "  autoreport run kovo daily --mark --yes",
            describeRun, runRun},
    Command{"set", true, "Changes a report's settings and shows the previous values.",
            "autoreport set kovo daily --enable --time 07:00 \\\n"
            "      --emails payroll@example.com,boss@example.com",
            describeSet, runSet},
    Command{"check", false, "Checks the installation and says how to mend what is wrong.",
            "autoreport check\n  autoreport check --json", describeCheck, runCheck},
};

const Command *find(const QString &name)
{
    const auto *found = std::find_if(commands.begin(), commands.end(), [&name](const Command &one) {
        return name == QLatin1String(one.name);
    });
    return found == commands.end() ? nullptr : found;
}

void describe(const Command &command, QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("%1\n\nExample:\n  %2")
            .arg(QLatin1String(command.purpose), QLatin1String(command.example)));
    parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help.")});
    parser.addPositionalArgument(QLatin1String(command.name), {}, QLatin1String(command.name));
    if (command.takesReport) {
        parser.addPositionalArgument(
            QStringLiteral("TOKEN"),
            QStringLiteral("The schema's token; with --single the name of the database."));
        parser.addPositionalArgument(QStringLiteral("daily|monthly"),
                                     QStringLiteral("Which of its two reports."));
    }
    command.describe(parser);
    parser.addOption(
        {QStringLiteral("timeout"),
         QStringLiteral("Limit for connecting, and for each answer of the server; 10 if not "
                        "given."),
         QStringLiteral("seconds"), QStringLiteral("10")});
    OptionReader::describe(parser);
}

/// Sets schema and report from the positional arguments, the command's name first. Returns an error
/// or an empty text.
QString readArguments(const Command &command, Invocation &invocation)
{
    const QStringList given = invocation.parser.positionalArguments();
    const int expected = command.takesReport ? 3 : 1;
    if (given.size() > expected)
        return QStringLiteral("unexpected argument '%1'").arg(given.at(expected));
    if (!command.takesReport)
        return {};
    if (given.size() < expected)
        return QStringLiteral("the schema and the report are missing");
    const ReportKind *kind = reportKindOf(given.at(2));
    if (!kind)
        return QStringLiteral("there is no report '%1': it is daily or monthly").arg(given.at(2));
    invocation.token = given.at(1);
    invocation.kind = kind;
    return {};
}

int runCommand(const Command &command, Invocation &invocation)
{
    const QString error = readArguments(command, invocation);
    if (!error.isEmpty())
        return invocation.wrong(error);
    OptionReader reader(invocation.parser);
    invocation.connection = reader.connection();
    invocation.connection.timeoutSeconds = reader.number("timeout", 1, maxTimeoutSeconds);
    if (reader.error.isEmpty())
        invocation.connection.password = reader.password();
    const QString language = reader.language();
    // The whole command line is checked before the first connection attempt.
    if (reader.error.isEmpty()) {
        Language::install(language);
        // From here on, warnings are collected for the command to print.
        const Messages messages;
        const int status = command.run(invocation);
        // Warnings that the command has not printed turn success into Look.
        return Messages::print() && status == Tool::Well ? Tool::Look : status;
    }
    if (reader.isUsage)
        return invocation.wrong(reader.error);
    Output::error(reader.error);
    return Tool::CouldNotAsk;
}

} // namespace

QString Tool::commandIn(const QStringList &arguments)
{
    // Connection options may precede the command. Errors in options are reported by the command.
    QCommandLineParser parser;
    OptionReader::describe(parser);
    parser.parse(arguments);
    const QString first = parser.positionalArguments().value(0);
    return find(first) ? first : QString();
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
    const Command &command = *find(name);
    QCommandLineParser parser;
    describe(command, parser);
    Invocation invocation(parser);
    if (!parser.parse(arguments))
        return invocation.wrong(parser.errorText());
    if (invocation.has("help")) {
        Output::print(parser.helpText().trimmed().split(QLatin1Char('\n')));
        return Well;
    }
    return runCommand(command, invocation);
}
