#include "tool/statustable.h"

#include "tool/output.h"

#include <QJsonArray>

#include <algorithm>

namespace
{

// These keep the widest line at 120 columns.
constexpr int tokenWidth = 20;
constexpr int timeWidth = 8;
constexpr int maxCount = 99;
constexpr qint64 secondsPerMinute = 60;
constexpr qint64 secondsPerHour = 3600;
constexpr qint64 secondsPerDay = 86400;

/// Damaged settings may hold seconds beyond any calendar.
QDateTime lastGenerated(const ReportStatus &report)
{
    const qint64 seconds = report.stored.settings.lastGenerated;
    return seconds == 0 ? QDateTime()
                        : QDateTime::fromSecsSinceEpoch(std::min(seconds, endOfYear9999));
}

/// Keeps the column as narrow as its heading; the JSON has the exact number.
QString count(int number)
{
    return number > maxCount ? QStringLiteral(">99") : QString::number(number);
}

/// Returns the age in the largest unit of which there are at least two.
QString age(qint64 seconds)
{
    if (seconds < 2 * secondsPerMinute)
        return QStringLiteral("%1 s").arg(seconds);
    if (seconds < 2 * secondsPerHour)
        return QStringLiteral("%1 min").arg(seconds / secondsPerMinute);
    if (seconds < 2 * secondsPerDay)
        return QStringLiteral("%1 h").arg(seconds / secondsPerHour);
    return QStringLiteral("%1 d").arg(seconds / secondsPerDay);
}

/// Returns "2", or "2+1" if one more entry is not a mail address.
QString recipientsText(const ReportStatus &report)
{
    const Recipients recipients(report.stored.settings.recipients);
    const QString good = count(recipients.wellFormed.size());
    return recipients.malformed.isEmpty()
               ? good
               : good + QLatin1Char('+') + count(recipients.malformed.size());
}

/// Returns the text of the last column: the reason, "well" or "off".
QString stateText(const ReportStatus &report)
{
    if (!report.reason.isEmpty())
        return report.reason;
    return report.stored.settings.enabled ? QStringLiteral("well") : QStringLiteral("off");
}

Output::Colour stateColour(const ReportStatus &report)
{
    if (!report.reason.isEmpty())
        return Output::Colour::Bad;
    return report.stored.settings.enabled ? Output::Colour::Good : Output::Colour::Notable;
}

QStringList tableRow(const ReportStatus &report)
{
    const QString none = QStringLiteral("-");
    const QString token = Output::shortened(report.token, tokenWidth);
    if (!report.kind)
        return {token, none, none, none, none, none, none, none, none, stateText(report)};
    const QString time = report.stored.text("time");
    return {token,
            QLatin1String(report.kind->word),
            report.stored.settings.enabled ? QStringLiteral("yes") : QStringLiteral("no"),
            time.isEmpty() ? none : Output::shortened(time, timeWidth),
            Output::moment(lastGenerated(report)),
            Output::moment(report.next),
            recipientsText(report),
            QString::number(report.queued),
            report.queued > 0 ? age(report.oldestSeconds) : none,
            stateText(report)};
}

/// Returns the start of the sentence below the table: the whole token, which a row shortens.
QString headline(const ReportStatus &report)
{
    return report.kind ? report.token + QLatin1Char(' ') + QLatin1String(report.kind->word)
                       : report.token;
}

QJsonValue jsonMoment(const QDateTime &moment)
{
    return moment.isValid() ? moment.toOffsetFromUtc(moment.offsetFromUtc()).toString(Qt::ISODate)
                            : QJsonValue();
}

QJsonValue jsonText(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : text;
}

} // namespace

QStringList statusTable(const QVector<ReportStatus> &reports)
{
    QVector<QStringList> rows{
        QStringLiteral("SCHEMA REPORT ON TIME LAST NEXT TO QUEUED OLDEST STATE")
            .split(QLatin1Char(' '))};
    QVector<Output::Colour> colours;
    QStringList details;
    for (const ReportStatus &report : reports) {
        rows.append(tableRow(report));
        colours.append(stateColour(report));
        if (!report.reason.isEmpty())
            details += QStringLiteral("%1: %2").arg(headline(report), report.detail);
    }
    const QStringList table = Output::table(rows, colours);
    return details.isEmpty() ? table : table + QStringList(QString()) + details;
}

QJsonObject statusJson(const ReportStatus &report)
{
    // "reason" is always there, so that a monitor need not look at any other key.
    QJsonObject object{{QStringLiteral("schema"), report.token},
                       {QStringLiteral("database"), report.databaseName},
                       {QStringLiteral("reason"), jsonText(report.reason)},
                       {QStringLiteral("detail"), jsonText(report.detail)}};
    if (!report.kind)
        return object;
    const Recipients recipients(report.stored.settings.recipients);
    const auto add = [&object](const char *key, const QJsonValue &value) {
        object.insert(QLatin1String(key), value);
    };
    add("report", QLatin1String(report.kind->word));
    add("enabled", report.stored.settings.enabled);
    add("time", jsonText(report.stored.text("time")));
    add("lastGenerated", jsonMoment(lastGenerated(report)));
    add("nextDue", jsonMoment(report.next));
    add("recipients", QJsonArray::fromStringList(recipients.wellFormed));
    add("malformedRecipients", QJsonArray::fromStringList(recipients.malformed));
    add("queued", report.queued);
    add("oldestQueuedSeconds", report.queued > 0 ? QJsonValue(report.oldestSeconds) : QJsonValue());
    return object;
}
