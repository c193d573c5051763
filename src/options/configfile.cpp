#include "options/configfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

namespace
{

bool isKnown(const QString &key)
{
    static const QStringList known{
        QStringLiteral("database/host"),        QStringLiteral("database/port"),
        QStringLiteral("database/user"),        QStringLiteral("database/name"),
        QStringLiteral("database/ca"),          QStringLiteral("database/cert"),
        QStringLiteral("database/key"),         QStringLiteral("database/single"),
        QStringLiteral("database/password"),    QStringLiteral("database/password-file"),
        QStringLiteral("reports/language"),     QStringLiteral("serve/metrics"),
        QStringLiteral("serve/clear-workbooks")};
    return known.contains(key);
}

QString accessError(const QString &path)
{
    QFile file(path);
    if (QFileInfo(path).isDir())
        return QStringLiteral("cannot read the configuration file '%1': it is a directory")
            .arg(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot read the configuration file '%1': %2")
            .arg(path, file.errorString());
    return {};
}

/// Returns the raw text of all values, keyed like "database/host".
QMap<QString, QString> writtenValues(const QString &path)
{
    QMap<QString, QString> written;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return written;
    QString section;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &whole : lines) {
        const QString line = whole.trimmed();
        const int equals = line.indexOf(QLatin1Char('='));
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']')))
            section = line.mid(1, line.size() - 2) + QLatin1Char('/');
        else if (equals > 0)
            written.insert(section + line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
    }
    return written;
}

/// Returns the intended value: the text itself or, if the text is in double quotes, its content
/// with \" and \\ replaced by " and \.
QString intendedValue(const QString &written)
{
    const QLatin1Char quote('"');
    if (written.size() < 2 || !written.startsWith(quote) || !written.endsWith(quote))
        return written;
    return written.mid(1, written.size() - 2)
        .replace(QLatin1String("\\\""), QLatin1String("\""))
        .replace(QLatin1String("\\\\"), QLatin1String("\\"));
}

/// Returns the original in /etc if `path` is a copy that the service manager made for the service;
/// otherwise `path` itself. The copy is always private, so only the permissions of the original
/// show whether the password is secret.
QString originOf(const QString &path)
{
    const QFileInfo file(path);
    const QString credentials = qEnvironmentVariable("CREDENTIALS_DIRECTORY");
    const QString origin = QStringLiteral("/etc/") + file.fileName();
    const bool isCopy =
        !credentials.isEmpty() && file.absolutePath() == QFileInfo(credentials).absoluteFilePath();
    return isCopy && QFile::exists(origin) ? origin : path;
}

QString secrecyError(const QString &path)
{
    const QFile::Permissions others = QFile::ReadOther | QFile::WriteOther;
    if (!(QFile::permissions(path) & others))
        return {};
    return QStringLiteral("the configuration file '%1' contains a password, but every account of "
                          "this machine can read or change the file; run: chmod o-rwx %1")
        .arg(path);
}

} // namespace

QString ConfigFile::defaultPath()
{
    return QStringLiteral("/etc/autoreport.conf");
}

ConfigFile ConfigFile::read(const QString &path)
{
    ConfigFile config;
    config.error = accessError(path);
    config.isReadable = config.error.isEmpty();
    if (!config.isReadable)
        return config;

    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    const QStringList keys = settings.allKeys();
    if (settings.status() != QSettings::NoError)
        config.error =
            QStringLiteral("the configuration file '%1' is not an INI file: see man autoreport")
                .arg(path);
    const QMap<QString, QString> written = writtenValues(path);
    for (const QString &key : keys) {
        if (!config.error.isEmpty())
            break;
        const QString value = settings.value(key).toString();
        // Refuse unknown keys instead of skipping them: a misspelt "password" would be hard to
        // find.
        if (!isKnown(key))
            config.error = QStringLiteral("the configuration file '%1' has an unknown key '%2'")
                               .arg(path, key);
        // Qt reads commas as lists, semicolons as comments and a leading "@" as a type code. If Qt
        // silently altered a password, the server would seem to be at fault.
        else if (value != intendedValue(written.value(key)))
            config.error =
                QStringLiteral("the value of '%1' in the configuration file '%2' is ambiguous: put "
                               "it in double quotes, with a backslash before each \" and \\; "
                               "values starting with @@ are not supported")
                    .arg(key, path);
        config.values.insert(key, value);
    }
    if (config.error.isEmpty() && config.values.contains(QStringLiteral("database/password")))
        config.error = secrecyError(originOf(path));
    if (!config.error.isEmpty())
        config.values.clear();
    return config;
}
