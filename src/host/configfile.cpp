#include "host/configfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

namespace
{

bool isKnown(const QString &key)
{
    static const QStringList known{
        QStringLiteral("database/host"),          QStringLiteral("database/port"),
        QStringLiteral("database/user"),          QStringLiteral("database/name"),
        QStringLiteral("database/single"),        QStringLiteral("database/password"),
        QStringLiteral("database/password-file"), QStringLiteral("reports/language")};
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

QString secrecyError(const QString &path)
{
    const QFile::Permissions others = QFile::ReadOther | QFile::WriteOther;
    if (!(QFile::permissions(path) & others))
        return {};
    return QStringLiteral("the configuration file '%1' holds a password and is open to every "
                          "account of this machine; close it with: chmod o-rwx %1")
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
    if (!config.error.isEmpty())
        return config;

    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    const QStringList keys = settings.allKeys();
    if (settings.status() != QSettings::NoError)
        config.error =
            QStringLiteral("the configuration file '%1' is no INI file: see man autoreport")
                .arg(path);
    for (const QString &key : keys) {
        // Refused rather than skipped: a typing error in "password" is hard to find otherwise.
        if (!isKnown(key)) {
            config.error = QStringLiteral("the configuration file '%1' has an unknown key '%2'")
                               .arg(path, key);
            continue;
        }
        // A value with a comma that nobody quoted comes apart as a list.
        config.values.insert(key, settings.value(key).toStringList().join(QLatin1Char(',')));
    }
    if (config.error.isEmpty() && config.values.contains(QStringLiteral("database/password")))
        config.error = secrecyError(path);
    return config;
}
