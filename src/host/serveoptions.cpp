#include "host/serveoptions.h"

#include "host/pluginhandle.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

namespace
{

constexpr int wrongOption = 2;
constexpr int failure = 1;
constexpr int maxRunForSeconds = 2000000; // what a timer can hold, 23 days

// The first thing found wrong; empty while all is well.
class OptionReader
{
public:
    explicit OptionReader(const QCommandLineParser &commandLine)
        : parser(commandLine)
    {
    }

    QString error;

    QString text(const char *name)
    {
        const QString option = QLatin1String(name);
        QString value = parser.value(option);
        if (value.isEmpty())
            fail(QStringLiteral("--%1 is missing").arg(option));
        return value;
    }

    int number(const char *name, int least, int most)
    {
        bool isNumber = false;
        const QString value = text(name);
        const int number = value.toInt(&isNumber);
        if (!isNumber || number < least || number > most) {
            fail(QStringLiteral("--%1 must be a number from %2 to %3, not '%4'")
                     .arg(QLatin1String(name), QString::number(least), QString::number(most),
                          value));
        }
        return number;
    }

private:
    void fail(const QString &reason)
    {
        if (error.isEmpty())
            error = reason;
    }

    const QCommandLineParser &parser;
};

void describe(QCommandLineParser &parser)
{
    const auto add = [&parser](const char *name, const char *description, const char *value,
                               const char *preset = nullptr) {
        parser.addOption({QLatin1String(name), QLatin1String(description), QLatin1String(value),
                          QLatin1String(preset)});
    };
    parser.setApplicationDescription(
        QStringLiteral("Loads the attendance report plug-in and serves it until SIGINT or "
                       "SIGTERM; SIGUSR1 pauses,\nSIGUSR2 resumes. --db-host, --db-port, "
                       "--db-user and --db-name are required. The\npassword is read from the "
                       "environment variable AUTOREPORT_DB_PASSWORD or from a file."));
    // Not addHelpOption(), which brings along "--help-all" for programs with windows.
    parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help.")});
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("serve"), QStringLiteral("Run the plug-in."));
    parser.addOption({QStringLiteral("single"),
                      QStringLiteral("Serve one schema, --db-name, instead of every schema that "
                                     "the information database --db-name lists.")});
    add("plugin", "The module to load; otherwise the program's own.", "file");
    add("db-host", "Host of the database server.", "host");
    add("db-port", "Port of the database server.", "port");
    add("db-user", "Account on the database server.", "user");
    add("db-name", "Name of the database.", "name");
    add("password-file", "File whose first line is the password.", "file");
    add("debug", "Debug level, 0 to 255; above 0 debug lines are shown.", "level", "0");
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
    options.single = parser.isSet(QStringLiteral("single"));
    options.plugin = parser.isSet(QStringLiteral("plugin")) ? reader.text("plugin")
                                                            : PluginHandle::defaultFile();
    options.host = reader.text("db-host");
    options.port = reader.number("db-port", 1, 65535);
    options.user = reader.text("db-user");
    options.databaseName = reader.text("db-name");
    options.debugLevel = static_cast<quint8>(reader.number("debug", 0, 255));
    if (parser.isSet(QStringLiteral("run-for")))
        options.runForSeconds = reader.number("run-for", 1, maxRunForSeconds);
    return options;
}

// Gives the reason of a failure, or an empty text.
QString readPassword(const QCommandLineParser &parser, QString &password)
{
    const char *variable = "AUTOREPORT_DB_PASSWORD";
    if (parser.isSet(QStringLiteral("password-file"))) {
        QFile file(parser.value(QStringLiteral("password-file")));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            return QStringLiteral("cannot read the password file '%1': %2")
                .arg(file.fileName(), file.errorString());
        }
        password = QString::fromUtf8(file.readLine());
        if (password.endsWith(QLatin1Char('\n')))
            password.chop(1);
        return {};
    }
    if (!qEnvironmentVariableIsSet(variable))
        return QStringLiteral("no password: set %1 or give --password-file")
            .arg(QLatin1String(variable));
    password = qEnvironmentVariable(variable);
    return {};
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    describe(parser);
    OptionReader reader(parser);
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
    ServeOptions options = read(parser, reader);
    if (!reader.error.isEmpty())
        return wrong(reader.error);
    const QString noPassword = readPassword(parser, options.password);
    if (!noPassword.isEmpty())
        return {{}, failure, QStringLiteral("autoreport: %1\n").arg(noPassword)};
    return {options, 0, {}};
}
