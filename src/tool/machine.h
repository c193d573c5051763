#pragma once

#include "inquiry/hostinquiry.h"
#include "options/connectionoptions.h"
#include "tool/finding.h"

/// The answers of the hosts of this machine, and the state of the directory for workbooks. Does not
/// change after ask() has returned it, so any thread may read it.
struct Machine {
    QVector<HostAnswer> hosts; ///< hosts that serve the command's database
    /// Why some hosts could not be asked. It is unknown which databases they serve.
    QStringList silentHosts;
    /// The temporary directory of the first host; without a host, that of this process.
    QString temporaryDirectory;
    QString temporaryError; ///< why the directory cannot be used; empty if it can
    QString temporaryRemedy =
        QStringLiteral("make it writable, or point TMPDIR of the host elsewhere");
    qint64 temporaryFreeBytes = 0;

    /// Asks the hosts, for at most two seconds. If none serves the database, checks the temporary
    /// directory of this process, for at most two more seconds. The check creates and removes a
    /// file.
    static Machine ask(const ConnectionOptions &connection);

    /// Returns a host that has a worker for the schema, preferably a host that is not paused.
    /// Returns null if no host has a worker for the schema.
    const HostAnswer *hostOf(const QString &token) const;

    /// Returns what is wrong with the temporary directory.
    QVector<Finding> findings() const;
};
