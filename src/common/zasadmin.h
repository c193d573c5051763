#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>

/**
 * What the helpers know of the logged-in administrator and of the product's licence. Both belong
 * to the host, which fills them when it starts and at log-in; only its thread touches them.
 */
namespace ZAS
{

/// Permissions of an administrator, bits that only the host gives a meaning.
enum class AdminPerms : unsigned int { None = 0, Closure = 1 };

/// Screens of the product that can be closed to an administrator.
enum class GUIStates { Plan };

/// The logged-in administrator.
struct LoginInfo {
    QString name;
    QString login;
    QString email;
    unsigned int permissions = 0; ///< AdminPerms, or-ed
    QSet<int> closedScreens;      ///< GUIStates
    QString uids;                 ///< people whom the administrator may see, joined with ","

    /// "name (login)"
    QString getName() const;
    /// The built-in account "system", to which everything is open.
    bool isSupervisor() const;
    bool checkPerm(AdminPerms permission) const;
    bool checkPersonAccess(unsigned int uid) const;
    /// Whether the administrator may close months.
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
 * the built-in accounts (ids below 2). On the default connection; a failure is logged and leaves
 * nobody.
 */
void loadCurrentAdminPeopleUids();

bool isModule(const QString &module);
bool guiAccess(GUIStates screen);

/// The support chat with company, name and mail filled in; its host is set when the product is
/// built (AUTOREPORT_SUPPORT_CHAT_URL).
QUrl getSupportChatUrl();

} // namespace ZAS
