#pragma once

#include "inquiry/hostinquiry.h"
#include "options/connectionoptions.h"
#include "tool/finding.h"

/// What the hosts of this machine say of themselves, and the directory that workbooks go to. Asked
/// once for a command; read by its threads.
struct Machine {
    QVector<HostAnswer> hosts; ///< those that serve the database of the command
    QStringList silentHosts;   ///< why others, perhaps of this database, could not be asked
    /// Of the first host, which may have a directory of its own, or else of this process.
    QString temporaryDirectory;
    QString temporaryError; ///< why it cannot be used; empty if it can
    QString temporaryRemedy =
        QStringLiteral("make it writable, or point TMPDIR of the host elsewhere");
    qint64 temporaryFreeBytes = 0;

    /// Takes four seconds at most. Creates a file in the temporary directory for a moment.
    static Machine ask(const ConnectionOptions &connection);

    /// Returns the host that has a worker for the schema, one that is not paused if there are
    /// several; null if there is none.
    const HostAnswer *hostOf(const QString &token) const;

    /// Returns what is wrong with the temporary directory.
    QVector<Finding> findings() const;
};
