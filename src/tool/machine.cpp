#include "tool/machine.h"
#include "db/serverlist.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <algorithm>

#include <sys/statvfs.h>

namespace
{

constexpr int inquiryMs = 2000;
constexpr qint64 bytesPerMiB = 1048576;
constexpr qint64 spaceWantedMiB = 512;

/// The host's name may be spelled in several ways. Where one is spelled as in the command, that is
/// the one.
QVector<HostAnswer> hostsOf(const ConnectionOptions &connection, const QVector<HostAnswer> &all)
{
    const QString port = QString::number(connection.port);
    const QString server = serverText(connection.host, connection.port);
    QVector<HostAnswer> same;
    QVector<HostAnswer> alike;
    for (const HostAnswer &host : all) {
        if (host.database != connection.databaseName || host.isSingle != connection.single)
            continue;
        if (host.server == server)
            same.append(host);
        else if (host.server.section(QLatin1Char(':'), -1) == port)
            alike.append(host);
    }
    return same.isEmpty() ? alike : same;
}

void takeDirectoryOfHost(Machine &machine, const HostAnswer &host)
{
    machine.temporaryDirectory = host.temporaryDirectory;
    machine.temporaryFreeBytes = host.temporaryFreeBytes;
    if (host.temporaryDirectory.isEmpty())
        machine.temporaryError =
            QStringLiteral("the temporary directory of the host does not exist");
    else if (!host.isTemporaryWritable)
        machine.temporaryError =
            QStringLiteral("the host cannot write to its temporary directory '%1'")
                .arg(host.temporaryDirectory);
}

void takeOwnDirectory(Machine &machine)
{
    machine.temporaryDirectory = QDir::tempPath();
    if (machine.temporaryDirectory.isEmpty()) { // Qt's result if it does not exist
        machine.temporaryError = QStringLiteral("the temporary directory '%1' does not exist")
                                     .arg(qEnvironmentVariable("TMPDIR"));
        return;
    }
    // Permissions do not suffice: the file system may be read-only.
    QTemporaryFile file(machine.temporaryDirectory + QStringLiteral("/autoreport-check-XXXXXX"));
    if (!file.open())
        machine.temporaryError = QStringLiteral("cannot write to the temporary directory '%1': %2")
                                     .arg(machine.temporaryDirectory, file.errorString());
    // Not by QStorageInfo, which needs the table of mounts: it may be missing in a container.
    struct statvfs room = {};
    if (::statvfs(QFile::encodeName(machine.temporaryDirectory).constData(), &room) == 0)
        machine.temporaryFreeBytes = qint64(room.f_bavail) * qint64(room.f_frsize);
}

} // namespace

const char *const temporaryRemedy = "make it writable, or point TMPDIR of the host elsewhere";

Machine Machine::ask(const ConnectionOptions &connection)
{
    const HostsFound found = askHosts(inquiryMs);
    Machine machine;
    machine.hosts = hostsOf(connection, found.hosts);
    machine.silentHosts = found.errors;
    if (machine.hosts.isEmpty())
        takeOwnDirectory(machine);
    else
        takeDirectoryOfHost(machine, machine.hosts.first());
    return machine;
}

const HostAnswer *Machine::hostOf(const QString &token) const
{
    const HostAnswer *found = nullptr;
    for (const HostAnswer &host : hosts) {
        if (host.schemas.value(token).isServed && (!found || found->isPaused))
            found = &host;
    }
    return found;
}

QVector<Finding> Machine::findings() const
{
    Findings findings(QStringLiteral("host"));
    if (!temporaryError.isEmpty())
        findings.add(Gravity::Obstacle, "directory", temporaryError,
                     QLatin1String(temporaryRemedy));
    else if (temporaryFreeBytes < spaceWantedMiB * bytesPerMiB)
        findings.add(
            Gravity::Harm, "directory",
            QStringLiteral("%1 MiB are free in the temporary directory '%2'")
                .arg(QString::number(temporaryFreeBytes / bytesPerMiB), temporaryDirectory),
            QStringLiteral("workbooks stay there until they are replaced: make room for "
                           "%1 MiB, or point TMPDIR of the host elsewhere")
                .arg(spaceWantedMiB));
    return findings.list;
}
