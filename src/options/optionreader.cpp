#include "options/optionreader.h"

#include "db/serverlist.h"
#include "options/language.h"

#include <QCommandLineParser>
#include <QFile>
#include <QRegularExpression>
#include <QVariant>

#include <algorithm>
#include <limits>

namespace
{

constexpr int noPort = std::numeric_limits<int>::min(); // marks a host without a port

constexpr const char *passwordVariable = "AUTOREPORT_DB_PASSWORD";

/// Returns the key of an option in the configuration: "database/host" for "db-host".
QString configKey(const QString &option)
{
    if (option == QLatin1String("metrics") || option == QLatin1String("clear-workbooks"))
        return QStringLiteral("serve/") + option;
    const auto prefix = QLatin1String("db-");
    return QStringLiteral("database/") +
           (option.startsWith(prefix) ? option.mid(prefix.size()) : option);
}

/// Returns the first line without its newline. Keeps leading and trailing blanks, which may belong
/// to the password.
QString firstLine(QFile &file)
{
    QString line = QString::fromUtf8(file.readLine());
    if (line.endsWith(QLatin1Char('\n')))
        line.chop(1);
    return line;
}

} // namespace

void OptionReader::describe(QCommandLineParser &parser)
{
    const auto add = [&parser](const char *name, const char *description, const char *value) {
        parser.addOption({QLatin1String(name), QLatin1String(description), QLatin1String(value)});
    };
    parser.addOption({QStringLiteral("single"),
                      QStringLiteral("Treat --db-name as one schema, not as the information "
                                     "database that lists the schemas.")});
    add("db-host", "Host of the database server, or several: node1:3306,node2:3306.", "host");
    add("db-port", "Port of the database server.", "port");
    add("db-user", "Account on the database server.", "user");
    add("db-name", "Name of the database.", "name");
    add("db-ca", "Encrypt, and check the server's certificate against this authority.", "file");
    add("db-cert", "Certificate of this client, for servers that ask for one.", "file");
    add("db-key", "Private key of that certificate.", "file");
    add("password-file", "File whose first line is the password.", "file");
    parser.addOption(
        {QStringLiteral("config"),
         QStringLiteral("Configuration file with these options. Default: %1, if it exists.")
             .arg(ConfigFile::defaultPath()),
         QStringLiteral("file")});
}

OptionReader::OptionReader(const QCommandLineParser &commandLine)
    : parser(commandLine)
{
    const bool isGiven = parser.isSet(QStringLiteral("config"));
    const QString path =
        isGiven ? parser.value(QStringLiteral("config")) : ConfigFile::defaultPath();
    // The default file may be missing, but if it exists it must be valid.
    if (!isGiven && !QFile::exists(path))
        return;
    config = ConfigFile::read(path);
    // A default file that this account may not read is not an error if the command line is
    // complete.
    if (!config.error.isEmpty() && (isGiven || config.isReadable))
        fail(config.error, false);
}

bool OptionReader::hasOption(const QString &option) const
{
    return parser.isSet(option) || !parser.value(option).isEmpty();
}

QString OptionReader::text(const char *name)
{
    const QString option = QLatin1String(name);
    QString value =
        hasOption(option) ? parser.value(option) : config.values.value(configKey(option));
    if (value.isEmpty())
        failMissing(QStringLiteral("--%1 is missing").arg(option), true);
    return value;
}

bool OptionReader::flag(const char *name)
{
    const QString option = QLatin1String(name);
    if (parser.isSet(option))
        return true;
    const QString key = configKey(option);
    const QString value = config.values.value(key).toLower();
    const bool isTrue = value == QLatin1String("true") || value == QLatin1String("1");
    if (!isTrue && !value.isEmpty() && value != QLatin1String("false") &&
        value != QLatin1String("0"))
        fail(QStringLiteral("'%1' in the configuration must be true or false, not '%2'")
                 .arg(key, value),
             false);
    return isTrue;
}

int OptionReader::number(const char *name, int least, int most)
{
    bool isNumber = false;
    const QString value = text(name);
    const int number = value.toInt(&isNumber);
    if (!isNumber || number < least || number > most) {
        fail(QStringLiteral("--%1 must be a number from %2 to %3, not '%4'")
                 .arg(QLatin1String(name), QString::number(least), QString::number(most), value));
    }
    return number;
}

ConnectionOptions OptionReader::connection()
{
    ConnectionOptions options;
    options.single = flag("single");
    options.host = text("db-host");
    const auto servers = serversOf(options.host, noPort);
    for (const ServerAddress &server : servers) {
        const bool isPort = server.port == noPort || (server.port >= 1 && server.port <= 65535);
        if (server.host.isEmpty() || !isPort)
            fail(QStringLiteral("--db-host must be a host, or several such as "
                                "node1:3306,node2:3306, not '%1'")
                     .arg(options.host));
    }
    const bool isPortNeeded =
        std::any_of(servers.cbegin(), servers.cend(),
                    [](const ServerAddress &server) { return server.port == noPort; });
    if (isPortNeeded || hasOption(QStringLiteral("db-port")))
        options.port = number("db-port", 1, 65535);
    options.user = text("db-user");
    options.databaseName = text("db-name");
    options.authorityFile = file("db-ca");
    options.certificateFile = file("db-cert");
    options.keyFile = file("db-key");
    if (options.certificateFile.isEmpty() != options.keyFile.isEmpty())
        fail(QStringLiteral("--db-cert and --db-key must be given together"));
    return options;
}

/// Tries to open the file, because the driver's error would not name it.
QString OptionReader::file(const char *name)
{
    const QString option = QLatin1String(name);
    const QString path =
        hasOption(option) ? parser.value(option) : config.values.value(configKey(option));
    if (path.isEmpty())
        return path;
    QFile file(path);
    if (path.contains(QLatin1Char(';')))
        fail(QStringLiteral("--%1: the driver does not support a semicolon in a file name")
                 .arg(option));
    else if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("--%1: cannot read '%2': %3").arg(option, path, file.errorString()),
             false);
    return path;
}

QString OptionReader::address(const char *name)
{
    const QString option = QLatin1String(name);
    const QString value =
        hasOption(option) ? parser.value(option) : config.values.value(configKey(option));
    static const QRegularExpression form(
        QStringLiteral(R"(^([\w.-]+|\[[\da-fA-F:.]+\]):\d{1,5}$)"));
    if (!value.isEmpty() && !form.match(value).hasMatch())
        fail(QStringLiteral("--%1 must be an address with a port, such as 127.0.0.1:9469, not "
                            "'%2'")
                 .arg(option, value));
    return value;
}

QString OptionReader::password()
{
    const auto fileKey = QStringLiteral("password-file");
    const auto passwordKey = QStringLiteral("database/password");
    const bool isGiven = parser.isSet(fileKey);
    if (!isGiven && qEnvironmentVariableIsSet(passwordVariable))
        return qEnvironmentVariable(passwordVariable);
    if (!isGiven && config.values.contains(passwordKey))
        return config.values.value(passwordKey);
    if (isGiven || config.values.contains(configKey(fileKey))) {
        QFile file(isGiven ? parser.value(fileKey) : config.values.value(configKey(fileKey)));
        if (file.open(QIODevice::ReadOnly | QIODevice::Text))
            return firstLine(file);
        fail(QStringLiteral("cannot read the password file '%1': %2")
                 .arg(file.fileName(), file.errorString()),
             false);
        return {};
    }
    failMissing(QStringLiteral("no password: set %1 or give --password-file")
                    .arg(QLatin1String(passwordVariable)),
                false);
    return {};
}

void OptionReader::describeLanguage(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("language"),
                      QStringLiteral("Language of the reports: %1.")
                          .arg(Language::known().join(QStringLiteral(" (the default) or "))),
                      QStringLiteral("language")});
}

QString OptionReader::language()
{
    const auto option = QStringLiteral("language");
    QString language =
        config.values.value(QStringLiteral("reports/language"), Language::known().first());
    if (parser.optionNames().contains(option)) // isSet() warns if the command has no such option
        language = parser.value(option);
    if (!Language::known().contains(language))
        fail(QStringLiteral("--language must be %1, not '%2'")
                 .arg(Language::known().join(QStringLiteral(" or ")), language));
    return language;
}

/// Reports a missing option. If the configuration file could not be read, adds why, because that
/// file may set the option.
void OptionReader::failMissing(const QString &message, bool usage)
{
    if (config.isReadable)
        fail(message, usage);
    else
        fail(QStringLiteral("%1; %2").arg(message, config.error), false);
}

void OptionReader::fail(const QString &message, bool usage)
{
    if (!error.isEmpty())
        return;
    error = message;
    isUsage = usage;
}
