#include "inquiry/socketfolder.h"

#include <QDir>
#include <QFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

QString serviceFolder()
{
    return QStringLiteral("/run/autoreport"); // RuntimeDirectory= of the packaged unit
}

bool isWritableByRootOnly(const struct stat &found)
{
    return found.st_uid == 0 && (found.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

} // namespace

const char *const socketSuffix = ".socket";

QString ownSocketFolder()
{
    // The service manager may name several folders, separated by colons.
    const QString ofService =
        qEnvironmentVariable("RUNTIME_DIRECTORY").section(QLatin1Char(':'), 0, 0);
    if (!ofService.isEmpty())
        return ofService;
    if (::geteuid() == 0)
        return serviceFolder();
    const QString ofSession = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return ofSession.isEmpty() ? QStringLiteral("/tmp/autoreport-%1").arg(::geteuid())
                               : ofSession + QStringLiteral("/autoreport");
}

QString makeSocketFolder(const QString &folder)
{
    const QByteArray path = QFile::encodeName(folder);
    if (::mkdir(path.constData(), S_IRWXU) != 0 && errno != EEXIST)
        return qt_error_string(errno);
    struct stat found = {};
    if (::lstat(path.constData(), &found) != 0)
        return qt_error_string(errno);
    const bool isOurs = S_ISDIR(found.st_mode) && found.st_uid == ::geteuid();
    return isOurs ? QString() : QStringLiteral("it is not a directory of this account");
}

QStringList socketFolders()
{
    QStringList folders{ownSocketFolder(), serviceFolder()};
    folders.removeDuplicates();
    return folders;
}

bool isTrustedFolder(const QString &folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    struct stat found = {};
    if (::stat(QFile::encodeName(path).constData(), &found) != 0)
        return false;
    if (found.st_uid == 0 || found.st_uid == ::geteuid())
        return true;
    const QString parent = QFileInfo(path).path();
    return ::stat(QFile::encodeName(parent).constData(), &found) == 0 &&
           isWritableByRootOnly(found);
}

QStringList socketsIn(const QString &folder)
{
    QStringList sockets;
    const QStringList pattern{QLatin1Char('*') + QLatin1String(socketSuffix)};
    for (const QString &name : QDir(folder).entryList(pattern, QDir::System, QDir::Name)) {
        const QString path = folder + QLatin1Char('/') + name;
        struct stat found = {};
        if (::lstat(QFile::encodeName(path).constData(), &found) == 0 && S_ISSOCK(found.st_mode))
            sockets.append(path);
    }
    return sockets;
}
