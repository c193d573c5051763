#include "host/pluginhandle.h"

#include "plugin/databasemanagerinterface.h"
#include "plugin/serverinterface.h"
#include "plugin/verinfointerface.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>

PluginHandle::PluginHandle() = default;

PluginHandle::~PluginHandle() = default;

QString PluginHandle::defaultFile()
{
    const QDir here(QCoreApplication::applicationDirPath());
    const QString name = QStringLiteral("libautoreport.so");
    if (here.exists(name))
        return here.filePath(name);
    return QDir::cleanPath(here.filePath(QStringLiteral(AUTOREPORT_PLUGIN_DIR "/") + name));
}

QString PluginHandle::load(const QString &file)
{
    const QFileInfo info(file);
    if (!info.isFile())
        return QStringLiteral("no such file");

    // The path is absolute, because the loader would search Qt's folders for a relative one.
    // Reading the metadata runs none of the module's code.
    QPluginLoader loader(info.absoluteFilePath());
    const QString iid = loader.metaData().value(QStringLiteral("IID")).toString();
    if (iid.isEmpty())
        return QStringLiteral("not a Qt plug-in");
    if (iid != QLatin1String(qobject_interface_iid<ServerInterface *>()))
        return QStringLiteral("a plug-in, but not one for this server: its interface is %1")
            .arg(iid);

    object.reset(loader.instance());
    if (!object)
        return loader.errorString();
    serverPart = qobject_cast<ServerInterface *>(object.get());
    databasePart = qobject_cast<DatabaseManagerInterface *>(object.get());
    if (!serverPart || !databasePart)
        return QStringLiteral("does not implement the server interfaces");
    return {};
}

QString PluginHandle::description() const
{
    const auto *version = qobject_cast<VerInfoInterface *>(object.get());
    if (!version)
        return serverPart->getVersion();
    QStringList parts;
    const QMap<QString, QString> entries = version->getVerInfo();
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry)
        parts.append(entry.key() + QLatin1Char('=') + entry.value());
    return parts.join(QLatin1Char(' '));
}
