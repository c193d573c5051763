#include "reports/reportkind.h"

#include "reports/bookformat.h"
#include "reports/dailyattenreport.h"
#include "reports/monthlyattenreport.h"

#include <algorithm>

namespace
{

template <typename Report>
AttenReport *create(const QSqlDatabase &database, QObject *parent)
{
    return new Report(database, parent);
}

} // namespace

// The class names are literals, so that the locks named after them stay the same if a class is
// renamed: hosts of different versions share these locks.
//
// If no mail could be queued, the next tick tries the daily report again, but the monthly report
// counts as made.
const ReportKind dailyReport{"daily",
                             "DailyAttenReport",
                             "autoReport.DailyAtten.",
                             &onceADay,
                             CountsAsMade::WithAnyMail,
                             nullptr,
                             create<DailyAttenReport>,
                             DailyAttenOptions::keys,
                             DailyAttenReport::needs};
const ReportKind monthlyReport{"monthly",
                               "MonthlyAttenReport",
                               "autoReport.MonthlyAtten.",
                               &onceADay,
                               CountsAsMade::Always,
                               &xlsxFormat,
                               create<MonthlyAttenReport>,
                               MonthlyAttenOptions::keys,
                               MonthlyAttenReport::needs};

ReportSettings ReportKind::settingsOf(const QMap<QString, QVariant> &values) const
{
    ReportSettings settings = ReportSettings::fromValues(values, QLatin1String(prefix));
    settings.schedule = schedule;
    return settings;
}

const QVector<const ReportKind *> &reportKinds()
{
    static const QVector<const ReportKind *> kinds{&dailyReport, &monthlyReport};
    return kinds;
}

QStringList reportWords()
{
    QStringList words;
    for (const ReportKind *kind : reportKinds())
        words.append(QLatin1String(kind->word));
    return words;
}

const ReportKind *reportKindOf(const QString &word)
{
    const auto &kinds = reportKinds();
    const auto found = std::find_if(kinds.cbegin(), kinds.cend(), [&word](const ReportKind *kind) {
        return word == QLatin1String(kind->word);
    });
    return found == kinds.cend() ? nullptr : *found;
}
