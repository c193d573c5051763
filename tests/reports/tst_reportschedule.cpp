#include "reports/reportschedule.h"

#include <QTest>

#include <ctime>
#include <limits>

namespace
{

ReportSettings dueSettings(const QString &time)
{
    ReportSettings settings;
    settings.enabled = true;
    settings.recipients = QStringList{QStringLiteral("a@firma.sk")};
    settings.time = QTime::fromString(time);
    return settings;
}

QDateTime local(const QString &text)
{
    return QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

} // namespace

class TestReportSchedule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void settingsAreRead();
    void rules_data();
    void rules();
    void oncePerDay_data();
    void oncePerDay();
    void nextDueIsTheFirstDueMoment_data();
    void nextDueIsTheFirstDueMoment();
};

void TestReportSchedule::initTestCase()
{
    qputenv("TZ", "Europe/Bratislava");
    tzset();
}

void TestReportSchedule::settingsAreRead()
{
    const QString prefix = QStringLiteral("p.");
    const QMap<QString, QVariant> values{
        {QStringLiteral("p.enabled"), QByteArray("1")},
        {QStringLiteral("p.emails"), QStringLiteral("a@b.sk,, ,c@d.sk")},
        {QStringLiteral("p.time"), QStringLiteral("07:30")},
        {QStringLiteral("p.lastGenerated"), QByteArray("5000000000")}};
    const ReportSettings settings = ReportSettings::fromValues(values, prefix);
    QVERIFY(settings.enabled);
    QCOMPARE(settings.recipients, QStringList({QStringLiteral("a@b.sk"), QStringLiteral(" "),
                                               QStringLiteral("c@d.sk")}));
    QCOMPARE(settings.time, QTime(7, 30));
    QCOMPARE(settings.lastGenerated, Q_INT64_C(5000000000));

    const ReportSettings missing = ReportSettings::fromValues({}, prefix);
    QVERIFY(!missing.enabled && missing.recipients.isEmpty() && !missing.time.isValid());
}

void TestReportSchedule::rules_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("now");
    QTest::addColumn<int>("reason");

    const auto row = [](const char *name, const char *time, const char *last, const char *now,
                        ReportReason reason) {
        QTest::newRow(name) << QString::fromLatin1(time) << QString::fromLatin1(last)
                            << QString::fromLatin1(now) << static_cast<int>(reason);
    };
    const auto due = ReportReason::Due;
    const auto done = ReportReason::AlreadyGenerated;
    const auto early = ReportReason::TooEarly;
    row("a minute early", "07:00", "2023-11-14 07:00:00", "2023-11-15 06:59:59", early);
    row("on time", "07:00", "2023-11-14 07:00:00", "2023-11-15 07:00:00", due);
    row("made today", "07:00", "2023-11-15 07:00:05", "2023-11-15 07:01:05", done);
    row("60 s before the moment", "07:00", "2023-11-15 06:59:00", "2023-11-15 07:00:00", done);
    row("61 s before the moment", "07:00", "2023-11-15 06:58:59", "2023-11-15 07:00:00", due);
    row("seconds in the time", "07:00:30", "2023-11-14 07:00:00", "2023-11-15 07:00:29", early);
    row("no time: the first tick", "", "2023-11-14 23:00:00", "2023-11-15 00:00:03", due);
    row("no time: once", "25:00", "2023-11-15 00:00:04", "2023-11-15 18:00:00", done);
    row("generated in the future", "07:00", "2024-01-01 00:00:00", "2023-11-15 08:00:00", done);
}

void TestReportSchedule::rules()
{
    QFETCH(QString, time);
    QFETCH(QString, last);
    QFETCH(QString, now);
    ReportSettings settings = dueSettings(time);
    settings.lastGenerated = local(last).toSecsSinceEpoch();
    QTEST(static_cast<int>(reportReason(settings, local(now))), "reason");

    settings.recipients.clear();
    QCOMPARE(reportReason(settings, local(now)), ReportReason::NoRecipients);
    settings.enabled = false;
    QCOMPARE(reportReason(settings, local(now)), ReportReason::Disabled);
}

void TestReportSchedule::oncePerDay_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<int>("hours");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("firstTick");

    const auto row = [](const char *name, const QDate &date, int hours, const char *time,
                        const char *firstTick) {
        QTest::newRow(name) << date << hours << QString::fromLatin1(time)
                            << QString::fromLatin1(firstTick);
    };
    const QDate spring(2024, 3, 31);
    const QDate autumn(2024, 10, 27);
    row("ordinary day", QDate(2024, 2, 29), 24, "02:30", "02:30");
    row("23 hours, before the gap", spring, 23, "01:30", "01:30");
    row("23 hours, in the gap", spring, 23, "02:30", "03:00");
    row("23 hours, in the gap with seconds", spring, 23, "02:59:59", "03:00");
    row("23 hours, after the gap", spring, 23, "07:00", "07:00");
    row("25 hours, in the repeated hour", autumn, 25, "02:30", "02:30");
    row("25 hours, after it", autumn, 25, "03:00", "03:00");
    row("no time of day", autumn, 25, "", "00:00");
}

/// Ticks through the whole day, as a worker does: the report must go out once and not later.
void TestReportSchedule::oncePerDay()
{
    QFETCH(QDate, date);
    QFETCH(int, hours);
    QFETCH(QString, time);
    ReportSettings settings = dueSettings(time);
    settings.lastGenerated = date.addDays(-1).startOfDay().toSecsSinceEpoch();

    const qint64 start = date.startOfDay().toSecsSinceEpoch();
    QCOMPARE(date.addDays(1).startOfDay().toSecsSinceEpoch() - start, hours * Q_INT64_C(3600));
    QStringList made;
    for (qint64 tick = start; tick < start + hours * 3600; tick += 60) {
        const QDateTime now = QDateTime::fromSecsSinceEpoch(tick);
        if (reportReason(settings, now) != ReportReason::Due)
            continue;
        made.append(now.toString(QStringLiteral("HH:mm")));
        settings.lastGenerated = tick + 2;
    }
    QFETCH(QString, firstTick);
    QCOMPARE(made, QStringList{firstTick});
}

void TestReportSchedule::nextDueIsTheFirstDueMoment_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("now");
    QTest::addColumn<int>("secondsUntil");

    const auto row = [](const char *name, const char *time, const char *last, const char *now,
                        int secondsUntil) {
        QTest::newRow(name) << QString::fromLatin1(time) << QString::fromLatin1(last)
                            << QString::fromLatin1(now) << secondsUntil;
    };
    row("due now", "07:00", "2024-03-29 07:00:00", "2024-03-30 09:00:00", 0);
    row("later today", "07:00", "2024-03-29 07:00:00", "2024-03-30 06:59:00", 60);
    row("over the short night", "07:00", "2024-03-30 07:00:01", "2024-03-30 08:00:00", 22 * 3600);
    row("over the long night", "07:00", "2024-10-26 07:00:01", "2024-10-26 08:00:00", 24 * 3600);
    row("in the gap", "02:30", "2024-03-30 02:30:01", "2024-03-31 01:59:00", 60);
    row("before both passages", "02:30", "2024-10-26 02:30:01", "2024-10-27 01:30:00", 3600);
    row("no time", "", "2024-10-26 00:00:01", "2024-10-26 23:59:00", 60);
    row("made ahead of time", "07:00", "2024-06-01 08:00:00", "2024-05-31 08:00:00", 47 * 3600);
}

void TestReportSchedule::nextDueIsTheFirstDueMoment()
{
    QFETCH(QString, time);
    QFETCH(QString, last);
    QFETCH(QString, now);
    QFETCH(int, secondsUntil);
    ReportSettings settings = dueSettings(time);
    settings.lastGenerated = local(last).toSecsSinceEpoch();
    const QDateTime next = nextDue(settings, local(now));
    QCOMPARE(local(now).secsTo(next), qint64(secondsUntil));
    QCOMPARE(reportReason(settings, next), ReportReason::Due);
    if (secondsUntil > 0)
        QVERIFY(reportReason(settings, next.addMSecs(-1)) != ReportReason::Due);

    // Between the two passages of a time of day, after a morning without a host.
    const QDateTime between = QDateTime::fromSecsSinceEpoch(1729991400); // the second 02:10
    settings.time = QTime(2, 30);
    settings.lastGenerated = 0;
    QCOMPARE(between.secsTo(nextDue(settings, between)), Q_INT64_C(1200));
    settings.lastGenerated = std::numeric_limits<qint64>::max(); // not one day after the other
    QVERIFY(!nextDue(settings, local(now)).isValid());
    settings.lastGenerated = 0;
    settings.recipients.clear();
    QVERIFY(!nextDue(settings, local(now)).isValid());
}

QTEST_APPLESS_MAIN(TestReportSchedule)
#include "tst_reportschedule.moc"
