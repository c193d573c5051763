#include "host/serveoptions.h"

#include "host/pluginhandle.h"
#include "options/optionreader.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace
{

constexpr int wrongOption = 2;
constexpr int failure = 1;
constexpr int maxRunForSeconds = 2000000; // 23 days; a timer holds 2^31 ms

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
            "SIGTERM; SIGHUP scans the\nschemas at once, SIGUSR1 pauses, SIGUSR2 resumes. "
            "--db-host, --db-port, "
            "--db-user and --db-name are required, here\nor in the configuration file. "
            "The password is read from the environment variable\n"
            "AUTOREPORT_DB_PASSWORD or from a file.\n\nThe operator's commands, each with "
            "its own --help:\n") +
        commandHelp.chopped(1));
    // Not addHelpOption(), which adds "--help-all" for programs with windows.
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
    add("metrics", "Serve metrics for Prometheus there, 127.0.0.1:9469 for example.", "address");
    add("run-for", "Stop after that many seconds.", "seconds");
}

QString commandError(const QStringList &positional)
{
    if (positional.isEmpty())
        return QStringLiteral("no command given");
    if (positional.first() != QLatin1String("serve"))
        return QStringLiteral("unknown command '%1'").arg(positional.first());
    if (positional.size() > 1)
        return QStringLiteral("unexpected argument '%1'").arg(positional.at(1));
    return {};
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

CommandLine parseCommandLine(const QStringList &arguments, const QString &commandHelp)
{
    QCommandLineParser parser;
    describe(parser, commandHelp);
    const auto wrong = [&parser](const QString &error) {
        return CommandLine{
            {}, wrongOption, QStringLiteral("autoreport: %1\n\n%2").arg(error, parser.helpText())};
    };

    if (!parser.parse(arguments))
        return wrong(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return {{}, 0, parser.helpText()};
    if (parser.isSet(QStringLiteral("version"))) {
        return {
            {}, 0, QStringLiteral("autoreport %1\n").arg(QCoreApplication::applicationVersion())};
    }
    const QString command = commandError(parser.positionalArguments());
    if (!command.isEmpty())
        return wrong(command);
    OptionReader reader(parser);
    const ServeOptions options = read(parser, reader);
    if (reader.error.isEmpty())
        return {options, 0, {}};
    if (reader.isUsage)
        return wrong(reader.error);
    return {{}, failure, QStringLiteral("autoreport: %1\n").arg(reader.error)};
}
