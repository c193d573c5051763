#include "reports/reportquery.h"

#include "common/period.h"

#include <QSqlError>
#include <QSqlQuery>

bool execOrWarn(QSqlQuery &query, const QString &statement, const char *failure)
{
    if (query.exec(statement))
        return true;
    qWarning("%s %s", failure, qUtf8Printable(query.lastError().text()));
    return false;
}

bool execOrFail(QSqlQuery &query, const QString &statement, const char *failure)
{
    if (query.exec(statement))
        return true;
    qCritical("%s %s", failure, qUtf8Printable(query.lastError().text()));
    return false;
}

QString dayStartText(const QDate &date)
{
    return QString::number(dayStartSeconds(date));
}
