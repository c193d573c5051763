#include "tool/machine.h"

#include "db/serverlist.h"
#include "options/temporarydirectory.h"

#include <algorithm>
#include <chrono>

namespace
{

constexpr int inquiryMs = 2000;
constexpr auto temporaryPatience = std::chrono::milliseconds(inquiryMs);
constexpr qint64 bytesPerMiB = 1048576;
constexpr qint64 spaceWantedMiB = 512;

/// Returns the hosts that serve the database on the server that the command names. If there are
/// none, returns the hosts that serve a database of this name on a server with the same port,
/// because a server can have several names.
QVector<HostAnswer> hostsOf(const ConnectionOptions &connection, const QVector<HostAnswer> &all)
{
    const QString server = serverText(connection.host, connection.port);
    const QString port = server.section(QLatin1Char(':'), -1);
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

/// Does the common part of takeDirectoryOfHost() and takeOwnDirectory().
void takeDirectory(Machine &machine, const QString &path, bool isAnswering, qint64 freeBytes)
{
    machine.temporaryDirectory = path;
    machine.temporaryFreeBytes = freeBytes;
    if (!isAnswering) {
        machine.temporaryError =
            QStringLiteral("the disk of the temporary directory '%1' does not answer").arg(path);
        machine.temporaryRemedy =
            QStringLiteral("repair the disk, or point TMPDIR of the host elsewhere");
    }
}

void setMissing(Machine &machine, const QString &error)
{
    machine.temporaryError = error;
    machine.temporaryRemedy = QStringLiteral("create it, or point TMPDIR of the host elsewhere");
}

void takeDirectoryOfHost(Machine &machine, const HostAnswer &host)
{
    takeDirectory(machine, host.temporaryDirectory, host.isTemporaryAnswering,
                  host.temporaryFreeBytes);
    if (host.temporaryDirectory.isEmpty())
        setMissing(machine, QStringLiteral("the temporary directory of the host does not exist"));
    else if (host.isTemporaryAnswering && !host.isTemporaryWritable)
        machine.temporaryError =
            QStringLiteral("the host cannot write to its temporary directory '%1'%2")
                .arg(host.temporaryDirectory, host.temporaryError.isEmpty()
                                                  ? QString()
                                                  : QStringLiteral(": ") + host.temporaryError);
}

void takeOwnDirectory(Machine &machine)
{
    using State = TemporaryDirectory::State;
    const TemporaryDirectory own = TemporaryDirectoryProbe().check(temporaryPatience);
    takeDirectory(machine, own.path, own.state != State::Silent, own.freeBytes);
    if (own.state == State::Missing)
        setMissing(machine,
                   QStringLiteral("the temporary directory '%1' does not exist").arg(own.path));
    else if (own.state == State::NotWritable)
        machine.temporaryError = QStringLiteral("cannot write to the temporary directory '%1': %2")
                                     .arg(own.path, own.error);
    else if (own.state == State::Unchecked)
        machine.temporaryError = QStringLiteral("cannot check the temporary directory '%1': %2")
                                     .arg(own.path, own.error);
}

} // namespace

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
        findings.add(Gravity::Obstacle, "directory", temporaryError, temporaryRemedy);
    else if (temporaryFreeBytes < spaceWantedMiB * bytesPerMiB)
        findings.add(
            Gravity::Harm, "directory",
            QStringLiteral("only %1 MiB are free in the temporary directory '%2'")
                .arg(QString::number(temporaryFreeBytes / bytesPerMiB), temporaryDirectory),
            QStringLiteral("workbooks stay there for months: make room for "
                           "%1 MiB, or point TMPDIR of the host elsewhere")
                .arg(spaceWantedMiB));
    return findings.list;
}
