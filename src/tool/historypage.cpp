#include "tool/historypage.h"

#include "common/printable.h"
#include "tool/historytext.h"
#include "tool/output.h"

#include <QCryptographicHash>
#include <QFile>
#include <QLocale>

#include <algorithm>

/// Keeps the linker from dropping the library's resource. Must not be in a namespace, because the
/// macro declares a global function.
static void keepResource()
{
    Q_INIT_RESOURCE(page);
}

namespace
{

/// The size of a day in the units of the drawing, which the browser scales.
constexpr int dayWidth = 10;
constexpr int stripHeight = 20;

struct Shape {
    const char *name; ///< also the class in the style sheet
    const char *path;
};

/// Indexed by DayState: a dot, a cross, a triangle and a bar, which differ even without colours.
constexpr Shape shapes[] = {{"not-due", "M3.5 8.5h3v3h-3z"},
                            {"none", "M1 7l2-2 2 2 2-2 2 2-2 3 2 3-2 2-2-2-2 2-2-2 2-3z"},
                            {"waiting", "M5 4l4 12h-8z"},
                            {"made", "M1 2h8v16h-8z"}};

const Shape &shapeOf(DayState state)
{
    return shapes[static_cast<int>(state)];
}

/// Escapes markup, and replaces control characters, which browsers refuse or hide.
QString escaped(const QString &text)
{
    return withoutControls(text).toHtmlEscaped();
}

QString resource(const char *name)
{
    QFile file(QStringLiteral(":/page/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Returns the source expression with which a content security policy allows exactly this text.
QString allowed(const QString &text)
{
    return QStringLiteral("'sha256-%1'")
        .arg(QString::fromLatin1(
            QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256).toBase64()));
}

QString dayText(const QDate &date)
{
    return QLocale::c().toString(date, QStringLiteral("d MMM"));
}

QString drawing(const QString &content, int days, const QString &label)
{
    return QStringLiteral("<svg class=\"strip\" viewBox=\"0 0 %1 %2\" role=\"img\" "
                          "aria-label=\"%3\">%4</svg>")
        .arg(QString::number(days * dayWidth), QString::number(stripHeight), label, content);
}

/// Returns the text that a screen reader reads aloud in place of the drawing.
QString stripLabel(const ReportHistory &report)
{
    QStringList counts;
    for (const DayState state : {DayState::Made, DayState::Waiting, DayState::None})
        counts.append(QStringLiteral("%1 %2").arg(report.count(state)).arg(stateWord(state)));
    return QStringLiteral("%1 days: %2")
        .arg(QString::number(report.days.size()), counts.join(QStringLiteral(", ")));
}

QString strip(const ReportHistory &report)
{
    if (report.days.isEmpty())
        return {};
    QString content;
    int left = 0;
    for (const ReportDay &day : report.days) {
        content += QStringLiteral("<use href=\"#%1\" x=\"%2\"><title>%3: %4</title></use>")
                       .arg(QLatin1String(shapeOf(day.state).name), QString::number(left),
                            dayText(day.date), mailsText(day));
        left += dayWidth;
    }
    return drawing(content, report.days.size(), stripLabel(report));
}

QString kindWord(const ReportHistory &report)
{
    return report.status.kind ? QString(QLatin1String(report.status.kind->word)) : QString();
}

/// Returns the content of a cell in the column "Today", with the class that colours it.
QString todayCell(const ReportHistory &report)
{
    const QString &reason = report.status.reason;
    const bool isUnread = report.days.isEmpty();
    const QString word = !reason.isEmpty() ? reason
                         : isUnread        ? QStringLiteral("-")
                                           : stateWord(report.days.last().state);
    const QString look = !reason.isEmpty() ? QStringLiteral("none")
                         : isUnread
                             ? QStringLiteral("not-due")
                             : QString(QLatin1String(shapeOf(report.days.last().state).name));
    return QStringLiteral("<span class=\"tag %1\">%2</span>").arg(look, escaped(word));
}

/// The script sorts by the data attributes, which have the same names as the keys in head().
QString row(const ReportHistory &report)
{
    const qint64 last = report.lastQueuedAt();
    const QDateTime lastMoment =
        last == 0 ? QDateTime() : QDateTime::fromSecsSinceEpoch(std::min(last, endOfYear9999));
    const int state = report.days.isEmpty() ? -1 : static_cast<int>(report.days.last().state);
    // In ascending order, problems come first.
    const int rank = report.status.reason.isEmpty() ? state + 1 : -1;
    const QString token = escaped(report.status.token);
    return QStringLiteral("<tr data-schema=\"%1\" data-report=\"%2\" data-today=\"%3\" "
                          "data-last=\"%4\" data-missing=\"%5\">"
                          "<th scope=\"row\">%1</th><td class=\"kind\">%2</td><td>%6</td>"
                          "<td class=\"last\">%7</td><td class=\"missing\">%5</td>"
                          "<td class=\"days\">%8</td></tr>\n")
        .arg(token, kindWord(report), QString::number(rank), QString::number(last),
             QString::number(report.count(DayState::None)), todayCell(report),
             Output::moment(lastMoment), strip(report));
}

QString head()
{
    const QVector<QPair<const char *, const char *>> columns{{"schema", "Schema"},
                                                             {"report", "Report"},
                                                             {"today", "Today"},
                                                             {"last", "Last queued"},
                                                             {"missing", "Days missing"}};
    QString cells;
    for (const auto &[key, title] : columns)
        cells += QStringLiteral("<th scope=\"col\"><a href=\"#sort=%1\">%2</a></th>")
                     .arg(QLatin1String(key), QLatin1String(title));
    return cells;
}

QString table(const QVector<ReportHistory> &reports, const HistoryWindow &window)
{
    QString rows;
    for (const ReportHistory &report : reports)
        rows += row(report);
    return QStringLiteral(
               "<table>\n<thead><tr>%1<th scope=\"col\" class=\"days\">%2 to %3</th></tr>"
               "</thead>\n<tbody>\n%4</tbody>\n</table>\n")
        .arg(head(), dayText(window.first), dayText(window.now.date()), rows);
}

QString problems(const QVector<ReportHistory> &reports)
{
    QString items;
    int count = 0;
    for (const ReportHistory &report : reports) {
        if (report.status.reason.isEmpty())
            continue;
        ++count;
        items += QStringLiteral("<li><b>%1</b> %2 <span class=\"tag none\">%3</span> %4</li>\n")
                     .arg(escaped(report.status.token), kindWord(report),
                          escaped(report.status.reason), escaped(report.status.detail));
    }
    return count == 0 ? QStringLiteral("<p class=\"well\">No problems today.</p>\n")
                      : QStringLiteral("<h2>Problems today: %1</h2>\n<ul>\n%2</ul>\n")
                            .arg(QString::number(count), items);
}

/// Returns the legend. It also defines the shapes that the strips refer to: with a thousand
/// customers, the page would otherwise repeat them 62,000 times.
QString legend()
{
    QString items;
    for (const DayState state :
         {DayState::Made, DayState::Waiting, DayState::None, DayState::NotDue}) {
        const Shape &shape = shapeOf(state);
        items += QStringLiteral("<li><svg viewBox=\"0 0 %1 %2\" aria-hidden=\"true\"><path "
                                "id=\"%3\" class=\"%3\" d=\"%4\"/></svg> %5</li>")
                     .arg(QString::number(dayWidth), QString::number(stripHeight),
                          QLatin1String(shape.name), QLatin1String(shape.path), stateWord(state));
    }
    return QStringLiteral("<ul class=\"legend\">%1</ul>\n").arg(items);
}

} // namespace

QByteArray historyPage(const QVector<ReportHistory> &reports, const HistoryWindow &window)
{
    keepResource();
    const QString style = resource("history.css");
    const QString script = resource("history.js");
    const QString moment = Output::exactMoment(window.now);
    // Joins the parts with "+" rather than arg(), because customers' texts may contain "%1".
    return (QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src "
                           "'none'; style-src ") +
            allowed(style) + QStringLiteral("; script-src ") + allowed(script) +
            QStringLiteral("\">\n<meta name=\"viewport\" content=\"width=device-width, "
                           "initial-scale=1\">\n<title>Attendance reports, ") +
            moment + QStringLiteral("</title>\n<style>") + style +
            QStringLiteral("</style>\n</head>\n<body>\n<h1>Attendance reports</h1>\n"
                           "<p class=\"moment\">") +
            moment + QStringLiteral("</p>\n<section id=\"problems\">\n") + problems(reports) +
            QStringLiteral("</section>\n<section id=\"reports\">\n<h2>The last %1 days</h2>\n")
                .arg(HistoryWindow::dayCount) +
            legend() + table(reports, window) + QStringLiteral("</section>\n<script>") + script +
            QStringLiteral("</script>\n</body>\n</html>\n"))
        .toUtf8();
}
