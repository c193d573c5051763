#pragma once

#include <QStringList>

// Where the hosts of this machine keep their sockets, each named "PID.socket".

/// Returns the folder for the socket of a host in this process: the service manager's
/// (RUNTIME_DIRECTORY), for root the packaged service's, the login session's, or else one in /tmp
/// for this account. It may not exist yet.
QString ownSocketFolder();

/// Creates `folder` for this account alone unless it exists. Returns the error, or an empty text.
/// Refuses a folder that belongs to another account.
QString makeSocketFolder(const QString &folder);

/// Returns the folders in which commands look for hosts: ownSocketFolder() and the packaged
/// service's.
QStringList socketFolders();

/// Returns whether only root and this account can have created the folder; in /tmp anybody could.
/// The packaged service's folder is trusted too: its account owns it, but only root can create it.
bool isTrustedFolder(const QString &folder);

/// Returns the paths of the sockets in `folder`, by name.
QStringList socketsIn(const QString &folder);

/// The suffix of the sockets' names.
extern const char *const socketSuffix;
