#include "host/serveoptions.h"

#include "host/pluginhandle.h"
#include "options/optionreader.h"
#include "options/usage.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace
{

constexpr int wrongOption = 2;
constexpr int failure = 1;
constexpr int maxRunForSeconds = 2000000; // 23 days: a timer is limited to 2^31 ms

void describe(QCommandLineParser &parser, const QString &commandHelp)
{
    const auto add = [&parser](const char *name, const char *description, const char *value,
                               const char *preset = nullptr) {
        parser.addOption({QLatin1String(name), QLatin1String(description), QLatin1String(value),
                          QLatin1String(preset)});
    };
    parser.setApplicationDescription(
        QStringLiteral(
            "Loads the attendance report plug-in and runs it until SIGINT or "
            "SIGTERM. On SIGHUP, it scans\nthe schemas at once; SIGUSR1 pauses it, SIGUSR2 resumes "
            "it. --db-host, --db-user and\n--db-name are required, here or in the "
            "configuration file; --db-port is, too, unless each\nserver of --db-host has a "
            "port. The password is read from the environment variable\n"
            "AUTOREPORT_DB_PASSWORD or from a file.\n\nThe operator's commands, each with "
            "its own --help:\n") +
        commandHelp.chopped(1));
    // Not addHelpOption(), which also adds "--help-all".
    parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help.")});
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("serve"), QStringLiteral("Run the plug-in."));
    OptionReader::describe(parser);
    OptionReader::describeLanguage(parser);
    parser.addOption({QStringLiteral("clear-workbooks"),
                      QStringLiteral("Remove workbooks of past months from the temporary "
                                     "directory, once a day.")});
    add("plugin", "Module to load instead of the program's own.", "file");
    add("debug", "Debug level, 0 to 255; above 0 debug lines are shown.", "level", "0");
    add("metrics", "Serve metrics for Prometheus at this address, such as 127.0.0.1:9469.",
        "address");
    add("run-for", "Stop after this many seconds.", "seconds");
}

/// Returns the usage error; its text is empty if there is none. An unknown command is reported
/// before unknown options, which may be meant for that command.
UsageError usageError(const QCommandLineParser &parser, bool parsed, const QStringList &commands)
{
    const QStringList positional = parser.positionalArguments();
    if (!positional.isEmpty() && positional.first() != QLatin1String("serve"))
        return {
            QStringLiteral("unknown command '%1'").arg(positional.first()),
            Usage::nearest(positional.first(), QStringList(QStringLiteral("serve")) + commands)};
    if (!parsed)
        return Usage::parserError(parser);
    if (positional.size() > 1)
        return {QStringLiteral("unexpected argument '%1'").arg(positional.at(1))};
    return {};
}

/// Returns the result for a wrong command line: three lines of text.
CommandLine wrong(const UsageError &error, bool isServe)
{
    const QStringList lines = Usage::threeLines(
        error,
        isServe ? QStringLiteral("autoreport serve [options]")
                : QStringLiteral("autoreport COMMAND [options]"),
        isServe ? QStringLiteral("autoreport serve --help") : QStringLiteral("autoreport --help"));
    return {{}, wrongOption, lines.join(QLatin1Char('\n')) + QLatin1Char('\n')};
}

ServeOptions read(const QCommandLineParser &parser, OptionReader &reader)
{
    ServeOptions options;
    options.plugin = parser.isSet(QStringLiteral("plugin")) ? reader.text("plugin")
                                                            : PluginHandle::defaultFile();
    options.connection = reader.connection();
    options.language = reader.language();
    options.debugLevel = static_cast<quint8>(reader.number("debug", 0, 255));
    if (parser.isSet(QStringLiteral("run-for")))
        options.runForSeconds = reader.number("run-for", 1, maxRunForSeconds);
    options.clearsWorkbooks = reader.flag("clear-workbooks");
    options.metricsAddress = reader.address("metrics");
    if (reader.error.isEmpty())
        options.connection.password = reader.password();
    return options;
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments, const QStringList &commands,
                             const QString &commandHelp)
{
    QCommandLineParser parser;
    describe(parser, commandHelp);
    const bool parsed = parser.parse(arguments);
    const UsageError error = usageError(parser, parsed, commands);
    const bool isServe = parser.positionalArguments().value(0) == QLatin1String("serve");
    if (!error.text.isEmpty())
        return wrong(error, isServe);
    if (parser.isSet(QStringLiteral("help")))
        return {{}, 0, parser.helpText()};
    if (parser.isSet(QStringLiteral("version"))) {
        return {
            {}, 0, QStringLiteral("autoreport %1\n").arg(QCoreApplication::applicationVersion())};
    }
    if (!isServe)
        return wrong({QStringLiteral("no command given")}, isServe);
    OptionReader reader(parser);
    const ServeOptions options = read(parser, reader);
    if (reader.error.isEmpty())
        return {options, 0, {}};
    if (reader.isUsage)
        return wrong({reader.error}, isServe);
    return {{}, failure, QStringLiteral("autoreport: %1\n").arg(reader.error)};
}
