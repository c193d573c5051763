#pragma once

#include "inquiry/hostanswer.h"

#include <QStringList>
#include <QVector>

/// The hosts of this machine, as far as this account may ask them.
struct HostsFound {
    QVector<HostAnswer> hosts;
    QStringList errors; ///< why a host that is there did not answer
};

/// Asks every host whose socket is in one of socketFolders(), all at once: each has `timeoutMs`.
/// Blocks; needs no event loop. A socket without a process behind it is no host, and no socket is
/// asked in a folder that another account could have put there.
HostsFound askHosts(int timeoutMs);
