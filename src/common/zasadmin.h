#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>

/**
 * The logged-in administrator and the product's licence. Both belong to the host, which sets them
 * at start-up and log-in; only its thread uses them.
 */
namespace ZAS
{

/// Permissions of an administrator; the host defines what each bit means.
enum class AdminPerms : unsigned int { None = 0, Closure = 1 };

/// Screens of the product that can be closed to an administrator.
enum class GUIStates { Plan };

/// The logged-in administrator.
struct LoginInfo {
    QString name;
    QString login;
    QString email;
    unsigned int permissions = 0; ///< bits of AdminPerms
    QSet<int> closedScreens;      ///< GUIStates
    QString uids;                 ///< people whom the administrator may see, joined with ","

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
 * Reads the people whom the current administrator may see into `curAdmin.uids`: all active ones for
 * the built-in accounts (ids below 2). Uses the default connection. On an error, which is logged,
 * the list is empty.
 */
void loadCurrentAdminPeopleUids();

bool isModule(const QString &module);
bool guiAccess(GUIStates screen);

/// Returns the address of the support chat with company, name and mail as query items. The page is
/// set by the build option AUTOREPORT_SUPPORT_CHAT_URL.
QUrl getSupportChatUrl();

} // namespace ZAS
