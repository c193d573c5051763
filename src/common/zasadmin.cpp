#include "common/zasadmin.h"

#include "common/freshquery.h"

#include <QDebug>
#include <QSqlError>
#include <QUrlQuery>
#include <QVariant>

namespace
{

constexpr unsigned int firstOrdinaryAdmin = 2;

} // namespace

unsigned int ZAS::curAdminID = 0;
ZAS::LoginInfo ZAS::curAdmin;
ZAS::LicenseInfo ZAS::license;

QString ZAS::LoginInfo::getName() const
{
    return QStringLiteral("%1 (%2)").arg(name, login);
}

bool ZAS::LoginInfo::isSupervisor() const
{
    return login == QLatin1String("system");
}

bool ZAS::LoginInfo::checkPerm(AdminPerms permission) const
{
    return isSupervisor() || (permissions & static_cast<unsigned int>(permission)) != 0;
}

bool ZAS::LoginInfo::checkPersonAccess(unsigned int uid) const
{
    return isSupervisor() || uids.split(QLatin1Char(',')).contains(QString::number(uid));
}

bool ZAS::LoginInfo::closurePerms() const
{
    return checkPerm(AdminPerms::Closure);
}

void ZAS::loadCurrentAdminPeopleUids()
{
    const QString statement =
        curAdminID < firstOrdinaryAdmin
            ? QStringLiteral("SELECT uid FROM people WHERE status=1")
            : QStringLiteral("SELECT uid FROM admins_people WHERE aid=%1;").arg(curAdminID);
    QSqlQuery query = freshQuery(QSqlDatabase::database());
    if (!query.exec(statement)) {
        // The table is "admins_people"; the message stays misspelt because operators search for it.
        qCritical().noquote() << "Cannot load from admin_people, ERROR:"
                              << query.lastError().text();
    }
    QStringList uids;
    while (query.next())
        uids.append(query.value(0).toString());
    curAdmin.uids = uids.join(QLatin1Char(','));
}

bool ZAS::isModule(const QString &module)
{
    return license.modules.contains(module);
}

bool ZAS::guiAccess(GUIStates screen)
{
    return curAdmin.isSupervisor() || !curAdmin.closedScreens.contains(static_cast<int>(screen));
}

QUrl ZAS::getSupportChatUrl()
{
    QUrl url(QStringLiteral(AUTOREPORT_SUPPORT_CHAT_URL));
    QUrlQuery query;
    const auto add = [&query](const QString &key, const QString &value) {
        query.addQueryItem(key, QString::fromLatin1(QUrl::toPercentEncoding(value)));
    };
    add(QStringLiteral("company"), license.company);
    add(QStringLiteral("name"), curAdmin.name);
    add(QStringLiteral("mail"), curAdmin.email);
    url.setQuery(query);
    return url;
}
