#include "tool/statustable.h"

#include "tool/output.h"

#include <QJsonArray>

#include <algorithm>

namespace
{

constexpr qint64 secondsPerMinute = 60;
constexpr qint64 secondsPerHour = 3600;
constexpr qint64 secondsPerDay = 86400;
constexpr int gap = 2; // between columns, as in Output::table()

/// A column, and its place in the order in which columns are left out on a narrow terminal; 0 means
/// never.
struct Column {
    const char *heading;
    int givesWay;
};
constexpr Column columns[] = {{"SCHEMA", 0}, {"REPORT", 0}, {"ON", 5}, {"TIME", 6},
                              {"LAST", 4},   {"NEXT", 7},   {"TO", 3}, {"QUEUED", 2},
                              {"OLDEST", 1}, {"STATE", 0}};
constexpr int mostGivesWay = 7;

/// Limits the moment to the year 9999, because a damaged setting may be beyond any calendar.
QDateTime lastGenerated(const ReportJudgement &report)
{
    const qint64 seconds = report.stored.settings.lastGenerated;
    return seconds == 0 ? QDateTime()
                        : QDateTime::fromSecsSinceEpoch(std::min(seconds, endOfYear9999));
}

/// Returns the age in the largest unit that yields at least 2, or else in seconds.
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

/// Returns "2" for two recipients, or "2+1" if a third entry is not a mail address.
QString recipientsText(const ReportJudgement &report)
{
    const Recipients recipients(report.stored.settings.recipients);
    const QString good = QString::number(recipients.wellFormed.size());
    return recipients.malformed.isEmpty()
               ? good
               : good + QLatin1Char('+') + QString::number(recipients.malformed.size());
}

QStringList tableRow(const StatusLine &line)
{
    const QString none = QStringLiteral("-");
    const QString &token = line.schema->token;
    if (!line.report)
        return {token, none, none, none, none, none, none, none, none, line.state()};
    const ReportJudgement &report = *line.report;
    const QString time = report.stored.text("time");
    const SchemaJudgement &schema = *line.schema;
    return {token,
            QLatin1String(report.kind->word),
            report.stored.settings.enabled ? QStringLiteral("yes") : QStringLiteral("no"),
            time.isEmpty() ? none : time,
            Output::moment(lastGenerated(report)),
            Output::moment(report.next),
            recipientsText(report),
            schema.queued < 0 ? QStringLiteral("?") : QString::number(schema.queued),
            schema.queued > 0 ? age(schema.oldestSeconds) : none,
            line.state()};
}

int widthOf(const QVector<QStringList> &rows)
{
    int total = -gap;
    for (int column = 0; column < rows.first().size(); ++column) {
        int width = 0;
        for (const QStringList &row : rows)
            width = std::max(width, row.at(column).size());
        total += width + gap;
    }
    return total;
}

/// Removes columns until the table is at most `width` characters wide, or only those remain that
/// are never left out.
QVector<QStringList> fitted(QVector<QStringList> rows, int width)
{
    QVector<int> left;
    for (const Column &column : columns)
        left.append(column.givesWay);
    for (int next = 1; next <= mostGivesWay && widthOf(rows) > width; ++next) {
        const int index = left.indexOf(next);
        left.remove(index);
        for (QStringList &row : rows)
            row.removeAt(index);
    }
    return rows;
}

/// Returns what is wrong and what to do, or an empty text.
QString advice(const StatusLine &line)
{
    const auto &findings = line.findings();
    const auto found = std::find_if(findings.cbegin(), findings.cend(), [](const Finding &one) {
        return one.isProblem() || one.gravity == Gravity::Waiting;
    });
    return found == findings.cend()
               ? QString()
               : QStringLiteral("%1; to do: %2").arg(found->text, found->remedy);
}

/// Returns the subject of the line's sentence below the table.
QString subjectOf(const StatusLine &line)
{
    const QString &token = line.schema->token;
    return line.report ? token + QLatin1Char(' ') + QLatin1String(line.report->kind->word) : token;
}

Output::Colour colourOf(const StatusLine &line)
{
    if (line.isProblem())
        return Output::Colour::Bad;
    return line.state() == QLatin1String("well") ? Output::Colour::Good : Output::Colour::Notable;
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

void addReport(const StatusLine &line, QJsonObject &object)
{
    const ReportJudgement &report = *line.report;
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
    const bool isQueued = line.schema->queued > 0;
    add("queued", line.schema->queued < 0 ? QJsonValue() : line.schema->queued);
    add("oldestQueuedSeconds", isQueued ? QJsonValue(line.schema->oldestSeconds) : QJsonValue());
}

} // namespace

const QVector<Finding> &StatusLine::findings() const
{
    return report ? report->findings : schema->findings;
}

QString StatusLine::state() const
{
    return stateOf(findings());
}

bool StatusLine::isProblem() const
{
    return std::any_of(findings().cbegin(), findings().cend(),
                       [](const Finding &one) { return one.isProblem(); });
}

bool StatusLine::isOff() const
{
    return !isProblem() && !findings().isEmpty() && findings().first().gravity == Gravity::Off;
}

QStringList statusTable(const QVector<StatusLine> &lines)
{
    QStringList headings;
    for (const Column &column : columns)
        headings.append(QLatin1String(column.heading));
    QVector<QStringList> rows{headings};
    QVector<Output::Colour> colours;
    QStringList sentences;
    for (const StatusLine &line : lines) {
        rows.append(tableRow(line));
        colours.append(colourOf(line));
        const QString text = advice(line);
        if (!text.isEmpty())
            sentences.append(QStringLiteral("%1: %2").arg(subjectOf(line), text));
    }
    const int width = Output::terminalWidth();
    const QStringList table = Output::table(width > 0 ? fitted(rows, width) : rows, colours);
    return sentences.isEmpty() ? table : table + QStringList(QString()) + sentences;
}

QJsonObject statusJson(const StatusLine &line)
{
    // "reason" is always present, so that a monitor needs to read no other key.
    QJsonObject object{
        {QStringLiteral("schema"), line.schema->token},
        {QStringLiteral("database"), line.schema->databaseName},
        {QStringLiteral("state"), line.state()},
        {QStringLiteral("reason"), line.isProblem() ? QJsonValue(line.state()) : QJsonValue()},
        {QStringLiteral("detail"), jsonText(advice(line))}};
    if (line.report)
        addReport(line, object);
    return object;
}
