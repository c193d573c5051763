#pragma once

#include <QStringList>

// Where hosts keep the sockets at which they can be asked, a file "PID.socket" each.

/// Returns the folder for a host of this process: that of the service manager (RUNTIME_DIRECTORY),
/// that of the login session, or else one of this account, which may not exist yet.
QString ownSocketFolder();

/// Creates `folder` for this account alone unless it exists. Returns the error, or an empty text.
/// Refuses a folder that another account could have put there.
QString makeSocketFolder(const QString &folder);

/// Returns the folders that commands look for hosts in: ownSocketFolder() and the packaged
/// service's.
QStringList socketFolders();

/// Returns whether no account but root and this one can have put the folder there: in /tmp
/// everybody may create one. The packaged service's belongs to an account of its own, below a
/// folder of root.
bool isTrustedFolder(const QString &folder);

/// Returns the paths of the sockets in `folder`, by name.
QStringList socketsIn(const QString &folder);

/// What the names of the sockets end with.
extern const char *const socketSuffix;
