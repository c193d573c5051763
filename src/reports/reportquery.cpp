#include "reports/reportquery.h"

#include "common/daystart.h"

#include <QDateTime>
#include <QSqlError>
#include <QSqlQuery>

bool runOrWarn(QSqlQuery &query, const QString &statement, const char *failure)
{
    if (query.exec(statement))
        return true;
    qWarning("%s %s", failure, qUtf8Printable(query.lastError().text()));
    return false;
}

bool runOrFail(QSqlQuery &query, const QString &statement, const char *failure)
{
    if (query.exec(statement))
        return true;
    qCritical("%s %s", failure, qUtf8Printable(query.lastError().text()));
    return false;
}

QDate firstOfMonth(const QDate &date)
{
    return QDate(date.year(), date.month(), 1);
}

QString dayStartText(const QDate &date)
{
    return QString::number(dayStart(date).toSecsSinceEpoch());
}
