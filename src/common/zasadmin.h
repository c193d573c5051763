#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>

/**
 * The logged-in administrator and the product's licence. The host sets them at start-up and log-in.
 * Only the host's thread may use them.
 */
namespace ZAS
{

/// Permissions of an administrator. The host grants them.
enum class AdminPerms : unsigned int { None = 0, Closure = 1 };

/// Screens of the product that can be closed to an administrator.
enum class GUIStates { Plan };

/// The logged-in administrator.
struct LoginInfo {
    QString name;
    QString login;
    QString email;
    unsigned int permissions = 0; ///< bits of AdminPerms
    QSet<int> closedScreens;      ///< values of GUIStates
    QString uids;                 ///< ids of people whom the administrator may see, comma-separated

    /// Returns "name (login)".
    QString getName() const;
    /// Returns whether this is the built-in account "system", which may do everything.
    bool isSupervisor() const;
    bool checkPerm(AdminPerms permission) const;
    bool checkPersonAccess(unsigned int uid) const;
    /// Returns whether the administrator may close months.
    bool closurePerms() const;
};

/// The product's licence.
struct LicenseInfo {
    QString company;
    QStringList modules;
};

extern unsigned int curAdminID;
extern LoginInfo curAdmin;
extern LicenseInfo license;

/**
 * Sets `curAdmin.uids` to the ids of the people whom the current administrator may see. The
 * built-in accounts (ids below 2) may see all active people. Uses the default connection. If the
 * query fails, logs the error and sets an empty list.
 */
void loadCurrentAdminPeopleUids();

bool isModule(const QString &module);
bool guiAccess(GUIStates screen);

/// Returns the address of the support chat, with the company and the administrator's name and mail
/// address as query items. The build option AUTOREPORT_SUPPORT_CHAT_URL sets the page.
QUrl getSupportChatUrl();

} // namespace ZAS
