#include "reports/reportschedule.h"

namespace
{

constexpr qint64 toleranceSeconds = 60;
constexpr int secondsPerMinute = 60;

} // namespace

ReportSettings ReportSettings::fromValues(const QMap<QString, QVariant> &values,
                                          const QString &prefix)
{
    const auto value = [&](const char *key) {
        return values.value(prefix + QLatin1String(key));
    };

    ReportSettings settings;
    settings.enabled = value("enabled").toBool();
    settings.recipients = value("emails").toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
    settings.time = QTime::fromString(value("time").toString());
    settings.lastGenerated = value("lastGenerated").toLongLong();
    settings.uids = value("uids").toString();
    return settings;
}

ReportReason reportReason(const ReportSettings &settings, const QDateTime &now)
{
    if (!settings.enabled)
        return ReportReason::Disabled;
    if (settings.recipients.isEmpty())
        return ReportReason::NoRecipients;
    // An invalid time compares as earlier than any other.
    if (now.time() < settings.time)
        return ReportReason::TooEarly;
    const qint64 scheduled = scheduledMoment(now.date(), settings.time).toSecsSinceEpoch();
    return settings.lastGenerated < scheduled - toleranceSeconds ? ReportReason::Due
                                                                 : ReportReason::AlreadyGenerated;
}

QDateTime scheduledMoment(const QDate &date, const QTime &time)
{
    const QDateTime dayStart = date.startOfDay();
    if (!time.isValid())
        return dayStart;

    // With the offset at the start of the day, a repeated hour comes out as its first passage.
    const qint64 asUtc = QDateTime(date, time, Qt::UTC).toMSecsSinceEpoch();
    const QDateTime early =
        QDateTime::fromMSecsSinceEpoch(asUtc - dayStart.offsetFromUtc() * qint64(1000));
    if (early.date() == date && early.time() == time)
        return early;

    // The clock was changed earlier this day. No such moment: the first one after the gap.
    QDateTime moment(date, time);
    QTime minute(time.hour(), time.minute());
    while (!moment.isValid() && minute < QTime(23, 59)) {
        minute = minute.addSecs(secondsPerMinute);
        moment = QDateTime(date, minute);
    }
    return moment;
}
