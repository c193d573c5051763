#include "reports/dailyattenstatements.h"

#include "common/period.h"

#include <QStringList>

namespace
{

/// The people and the days that a statement selects, as SQL text.
struct Scope {
    bool many = false;
    QString uids;
    QString start;
    QString end;

    Scope(bool ofMany, const QString &uidText, const DaySpan &days)
        : many(ofMany)
        , uids(uidText)
        , start(QString::number(days.start))
        , end(QString::number(days.end))
    {
    }

    /// Returns the first two columns for forMany(), or an empty text for forOne().
    QString columns(QLatin1String moment) const
    {
        return many ? QLatin1String("uid, ") + moment + QLatin1String(", ") : QString();
    }
    QString people(QLatin1String equals) const
    {
        return many ? QLatin1String(" IN(") + uids + QLatin1Char(')') : equals + uids;
    }
};

QString attendance(const Scope &scope)
{
    return QStringLiteral("SELECT %1fond, work, diff, expFund FROM atten a WHERE uid%2 AND "
                          "(a.date >= %3 AND a.date < %4)")
        .arg(scope.columns(QLatin1String("a.date")), scope.people(QLatin1String(" = ")),
             scope.start, scope.end);
}

QString overtime(const Scope &scope)
{
    const QString day =
        scope.many ? QStringLiteral("at.date >= %1 AND at.date < %2").arg(scope.start, scope.end)
                   : QStringLiteral("at.date = ") + scope.start;
    return QStringLiteral("SELECT uid, at.date, diff FROM atten at WHERE (%1) AND (diff > 0) AND "
                          "(ok > 0) AND (at.uid%2)")
        .arg(day, scope.people(QLatin1String("=")));
}

QString advancedOvertime(const Scope &scope)
{
    return QStringLiteral("SELECT uid, at.date, saldo_p FROM atten at WHERE (at.date >= %1 AND "
                          "at.date < %2) AND (saldo_p > 0) AND (ok > 0) AND (at.uid%3)")
        .arg(scope.start, scope.end, scope.people(QLatin1String("=")));
}

QString corrections(const Scope &scope)
{
    return QStringLiteral("SELECT %1iid, duration FROM atten_data ad WHERE uid%2 AND (ad.from >= "
                          "%3 AND ad.from < %4) AND (iid >= 1000 AND iid < 1004)")
        .arg(scope.columns(QLatin1String("ad.from")), scope.people(QLatin1String(" = ")),
             scope.start, scope.end);
}

QString interruptions(const Scope &scope)
{
    return QStringLiteral("SELECT %1ad.iid, duration, i.shortcut, i.name FROM atten_data ad LEFT "
                          "JOIN inters i ON ad.iid = i.iid WHERE uid%2 AND (ad.from >= %3 AND "
                          "ad.from < %4) AND (ad.iid < 1000) AND (ad.iid > 1) AND del = 0")
        .arg(scope.columns(QLatin1String("ad.from")), scope.people(QLatin1String(" = ")),
             scope.start, scope.end);
}

QString statement(DayValue value, const Scope &scope, const DailyAttenOptions &options)
{
    switch (value) {
    case DayValue::Attendance:
        return attendance(scope);
    case DayValue::Overtime:
        return options.advancedOvertime ? advancedOvertime(scope) : overtime(scope);
    case DayValue::Corrections:
        return corrections(scope);
    case DayValue::Interruptions:
        return interruptions(scope);
    }
    return QString();
}

} // namespace

DaySpan DaySpan::of(const QDate &day)
{
    return {dayStartSeconds(day), dayStartSeconds(day.addDays(1))};
}

DailyAttenStatements::DailyAttenStatements(const DailyAttenOptions &reportOptions)
    : options(reportOptions)
{
}

DayValues DailyAttenStatements::values() const
{
    DayValues wanted = DayValue::Attendance | DayValue::Overtime | DayValue::Corrections;
    wanted.setFlag(DayValue::Interruptions, options.interruptions);
    return wanted;
}

QString DailyAttenStatements::forOne(DayValue value, unsigned int uid, const DaySpan &day) const
{
    return statement(value, Scope(false, QString::number(uid), day), options);
}

QString DailyAttenStatements::forMany(DayValue value, const QVector<unsigned int> &uids,
                                      const DaySpan &days) const
{
    QStringList texts;
    texts.reserve(uids.size());
    for (const unsigned int uid : uids)
        texts.append(QString::number(uid));
    // Overrides the server's `sql_select_limit`, which would silently truncate the result.
    return statement(value, Scope(true, texts.join(QLatin1Char(',')), days), options) +
           QStringLiteral(" LIMIT 18446744073709551615");
}
