#include "tool/historytext.h"

#include "tool/output.h"

#include <QJsonArray>
#include <QLocale>

#include <algorithm>

namespace
{

struct StateLook {
    const char *word;
    ushort sign; ///< different for each state, for terminals without colours
    Output::Colour colour;
};

/// Indexed by DayState.
constexpr StateLook looks[] = {{"not due", 0x00B7, Output::Colour::Plain},
                               {"none", 0x00D7, Output::Colour::Bad},
                               {"waiting", 0x25B2, Output::Colour::Notable},
                               {"made", 0x25A0, Output::Colour::Good}};

const StateLook &lookOf(DayState state)
{
    return looks[static_cast<int>(state)];
}

QString signs(DayState state, int count)
{
    return Output::coloured(QString(count, QChar(lookOf(state).sign)), lookOf(state).colour);
}

/// Returns one sign per day. Adjacent days in the same state share one pair of colour marks.
QString strip(const QVector<ReportDay> &days)
{
    QString text;
    for (auto day = days.cbegin(); day != days.cend();) {
        const auto end = std::find_if(
            day, days.cend(), [day](const ReportDay &one) { return one.state != day->state; });
        text += signs(day->state, static_cast<int>(end - day));
        day = end;
    }
    return text;
}

/// Returns the first and the last day, aligned with the ends of the strips in the rows below.
QString ruler(const QVector<ReportDay> &days)
{
    const auto text = [](const ReportDay &day) {
        return QLocale::c().toString(day.date, QStringLiteral("d MMM"));
    };
    const QString first = text(days.first());
    return first + text(days.last()).rightJustified(days.size() - first.size());
}

QDateTime momentOf(qint64 seconds)
{
    return seconds == 0 ? QDateTime()
                        : QDateTime::fromSecsSinceEpoch(std::min(seconds, endOfYear9999));
}

QJsonValue jsonMoment(qint64 seconds)
{
    const QDateTime moment = momentOf(seconds);
    return moment.isValid() ? moment.toOffsetFromUtc(moment.offsetFromUtc()).toString(Qt::ISODate)
                            : QJsonValue();
}

QJsonValue jsonText(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : text;
}

QStringList tableRow(const ReportHistory &report)
{
    const QString none = QStringLiteral("-");
    if (report.days.isEmpty())
        return {report.status.token,
                report.status.kind ? QString(QLatin1String(report.status.kind->word)) : none, none,
                report.status.reason, none};
    return {report.status.token, QLatin1String(report.status.kind->word),
            Output::moment(momentOf(report.lastQueuedAt())), stateWord(report.days.last().state),
            strip(report.days)};
}

QStringList legend()
{
    QStringList texts;
    for (const DayState state :
         {DayState::Made, DayState::Waiting, DayState::None, DayState::NotDue})
        texts.append(signs(state, 1) + QLatin1Char(' ') + stateWord(state));
    return {QString(), texts.join(QStringLiteral("   "))};
}

QJsonObject dayJson(const ReportDay &day)
{
    return {{QStringLiteral("day"), day.date.toString(Qt::ISODate)},
            {QStringLiteral("state"), stateWord(day.state)},
            {QStringLiteral("queued"), day.queued},
            {QStringLiteral("waiting"), day.waiting},
            {QStringLiteral("sent"), day.sent},
            {QStringLiteral("unsent"), day.unsent()},
            {QStringLiteral("lastQueuedAt"), jsonMoment(day.lastQueuedAt)},
            {QStringLiteral("lastSentAt"), jsonMoment(day.lastSentAt)}};
}

} // namespace

QString stateWord(DayState state)
{
    return QLatin1String(lookOf(state).word);
}

QString mailsText(const ReportDay &day)
{
    if (day.queued == 0)
        return stateWord(day.state);
    QStringList parts;
    const auto add = [&parts](int count, const char *what) {
        if (count > 0)
            parts.append(QStringLiteral("%1 %2").arg(count).arg(QLatin1String(what)));
    };
    add(day.sent, "sent");
    add(day.waiting, "waiting");
    add(day.unsent(), "taken from the queue but not sent");
    const QString mails =
        day.queued == 1 ? QStringLiteral("1 mail") : QStringLiteral("%1 mails").arg(day.queued);
    if (parts.size() == 1) // all mails are in one state: do not repeat their number
        return mails + QLatin1Char(' ') + parts.first().section(QLatin1Char(' '), 1);
    return QStringLiteral("%1: %2").arg(mails, parts.join(QStringLiteral(", ")));
}

QStringList historyTable(const QVector<ReportHistory> &reports)
{
    const auto withDays = std::find_if(reports.cbegin(), reports.cend(),
                                       [](const auto &one) { return !one.days.isEmpty(); });
    QVector<QStringList> rows{{QStringLiteral("SCHEMA"), QStringLiteral("REPORT"),
                               QStringLiteral("LAST QUEUED"), QStringLiteral("TODAY"),
                               withDays == reports.cend() ? QString() : ruler(withDays->days)}};
    QStringList details;
    for (const ReportHistory &report : reports) {
        rows.append(tableRow(report));
        if (!report.status.reason.isEmpty())
            details.append(QStringLiteral("%1%2: %3")
                               .arg(report.status.token,
                                    report.status.kind
                                        ? QLatin1Char(' ') + QLatin1String(report.status.kind->word)
                                        : QString(),
                                    report.status.detail));
    }
    // Plain, because strip() has already coloured the last column.
    const QVector<Output::Colour> colours(rows.size() - 1, Output::Colour::Plain);
    const QStringList lines = Output::table(rows, colours) + legend();
    return details.isEmpty() ? lines : lines + QStringList(QString()) + details;
}

QStringList historyDays(const ReportHistory &report)
{
    QStringList lines;
    for (const ReportDay &day : report.days) {
        if (day.state == DayState::NotDue)
            continue;
        const QString queuedAt =
            day.queued == 0
                ? QString()
                : QStringLiteral(", queued %1").arg(Output::moment(momentOf(day.lastQueuedAt)));
        const QString sentAt =
            day.sent == 0
                ? QString()
                : QStringLiteral(", sent %1").arg(Output::moment(momentOf(day.lastSentAt)));
        lines.append(QStringLiteral("%1 %2  %3%4%5")
                         .arg(day.date.toString(Qt::ISODate),
                              QString(QLatin1String(report.status.kind->word)).leftJustified(7),
                              mailsText(day), queuedAt, sentAt));
    }
    return lines;
}

QJsonObject historyJson(const ReportHistory &report)
{
    QJsonArray days;
    for (const ReportDay &day : report.days)
        days.append(dayJson(day));
    return {{QStringLiteral("schema"), report.status.token},
            {QStringLiteral("database"), report.status.databaseName},
            {QStringLiteral("report"), report.status.kind
                                           ? QJsonValue(QLatin1String(report.status.kind->word))
                                           : QJsonValue()},
            {QStringLiteral("enabled"), report.status.stored.settings.enabled},
            {QStringLiteral("reason"), jsonText(report.status.reason)},
            {QStringLiteral("detail"), jsonText(report.status.detail)},
            {QStringLiteral("days"), days}};
}
