#include "plugin/buildstamp.h"

#include <QDateTime>
#include <QLocale>

QString buildStamp(const QString &dateText, const QString &timeText)
{
    // The compiler writes English month names and pads the day with a blank.
    const QLocale english(QStringLiteral("en_US"));
    const QDate date = english.toDate(dateText.simplified(), QStringLiteral("MMM d yyyy"));
    const QTime time = QTime::fromString(timeText.simplified(), QStringLiteral("hh:mm:ss"));
    // QDateTime would replace an invalid time with midnight.
    if (!date.isValid() || !time.isValid())
        return QString();
    return QDateTime(date, time).toString(QStringLiteral("yyMMddhhmm"));
}
