#include "reports/reportschedule.h"

#include "support/testdata.h"

#include <limits>

Q_DECLARE_METATYPE(ScheduleVerdict)

class TestReportSchedule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rules_data()
    {
        const int hour = 3600;
        const auto due = ScheduleVerdict::Due;
        const auto done = ScheduleVerdict::AlreadyGenerated;
        const auto early = ScheduleVerdict::TooEarly;
        const char *day = "2023-11-14 07:00";
        addRow("a second early", "07:00", day, "2023-11-15 06:59:59", early, 1);
        addRow("on time", "07:00", day, "2023-11-15 07:00", due, 0);
        addRow("seconds in the time", "07:00:30", day, "2023-11-15 07:00:29", early, 1);
        addRow("made today", "07:00", "2023-11-15 07:00:05", "2023-11-15 08:00", done, 23 * hour);
        addRow("60 s before", "07:00", "2023-11-15 06:59", "2023-11-15 07:00", done, 24 * hour);
        addRow("61 s", "07:00", "2023-11-15 06:58:59", "2023-11-15 07:00", due, 0);
        addRow("no time: the first tick", "", "2023-11-14 23:00", "2023-11-15 00:00:03", due, 0);
        addRow("25:00: once", "25:00", "2023-11-15 00:00:04", "2023-11-15 18:00", done, 6 * hour);
        addRow("7: none either", "7", "2023-11-14 23:00", "2023-11-15 00:00", due, 0);
        addRow("in the future", "07:00", "2024-06-01 08:00", "2024-05-31 08:00", done, 47 * hour);
        addRow("long night", "07:00", "2024-10-26 07:00:01", "2024-10-26 08:00", done, 24 * hour);
        addRow("in the gap", "02:30", "2024-03-30 02:30:01", "2024-03-31 01:59", early, 60);
        addRow("before both", "02:30", "2024-10-26 02:30:01", "2024-10-27 01:30", early, hour);
    }

    void rules()
    {
        const auto [time, last, now, reason, wait] =
            fetch<QString, QString, QString, ScheduleVerdict, int>();
        ReportSettings settings = settingsWith(time, local(last));
        QCOMPARE(scheduleVerdict(settings, local(now)), reason);

        const QDateTime next = nextDue(settings, local(now));
        QCOMPARE(local(now).secsTo(next), qint64(wait));
        QCOMPARE(scheduleVerdict(settings, next), ScheduleVerdict::Due);
        if (wait > 0)
            QVERIFY(scheduleVerdict(settings, next.addMSecs(-1)) != ScheduleVerdict::Due);

        settings.recipients.clear();
        QCOMPARE(scheduleVerdict(settings, local(now)), ScheduleVerdict::NoRecipients);
        settings.enabled = false;
        QCOMPARE(scheduleVerdict(settings, local(now)), ScheduleVerdict::Disabled);
        QVERIFY(!nextDue(settings, local(now)).isValid());
    }

    void oncePerDay_data()
    {
        const QDate azores(2015, 10, 25); // 00:00 to 01:00 comes twice
        const QDate spring(2024, 3, 31);
        addRow("23 hours, in the gap", spring, 23, "02:30", "03:00");
        addRow("23 hours, in the gap with seconds", spring, 23, "02:59:59", "03:00");
        addRow("23 hours, after the gap", spring, 23, "07:00", "07:00");
        addRow("25 hours, in the repeated hour", QDate(2024, 10, 27), 25, "02:30", "02:30");
        addRow("midnight comes twice", azores, 25, "00:30", "00:30");
        addRow("midnight comes twice, no time of day", azores, 25, "", "00:00");
    }

    /// Ticks through the whole day, as a worker does: the report must go out once and not later.
    void oncePerDay()
    {
        const auto [date, hours, time, firstTick] = fetch<QDate, int, QString, QString>();
        const auto zone = qScopeGuard([] { qputenv("TZ", "Europe/Bratislava"); });
        qputenv("TZ", date.year() == 2015 ? "Atlantic/Azores" : "Europe/Bratislava");
        ReportSettings settings = settingsWith(time, date.addDays(-1).startOfDay());
        const qint64 start = date.addDays(1).startOfDay().toSecsSinceEpoch() - hours * 3600;
        QCOMPARE(QDateTime::fromSecsSinceEpoch(start).time(), QTime(0, 0));
        QStringList made;
        for (qint64 tick = start; tick < start + hours * 3600; tick += 60) {
            const QDateTime now = QDateTime::fromSecsSinceEpoch(tick);
            // In a repeated hour, the C library chooses by the half of the year that it converted
            // last.
            local(tick % 120 == 0 ? "2015-01-15" : "2015-07-15").toSecsSinceEpoch();
            if (scheduleVerdict(settings, now) != ScheduleVerdict::Due)
                continue;
            made.append(now.toString("HH:mm"));
            settings.lastGenerated = tick + 2;
        }
        QCOMPARE(made, QStringList{firstTick});
    }

    /// Over midnight the report stays that of the day before, unless it is due again.
    void afterWait()
    {
        const QDateTime last = local("2023-11-14 23:59:20");
        const QDateTime asked = local("2023-11-15 23:59:10");
        const QDateTime now = local("2023-11-16 00:03");
        QCOMPARE(momentAfterWait(settingsWith("23:59", last), asked, now), asked);
        QCOMPARE(momentAfterWait(settingsWith("", last), asked, now), now);
    }

    void edges()
    {
        // Between the two passages of 02:30, after a morning on which no host ran.
        const QDateTime between = QDateTime::fromSecsSinceEpoch(1729991400); // the second 02:10
        ReportSettings settings = settingsWith("02:30", local("2024-10-26 02:30:01"));
        QCOMPARE(between.secsTo(nextDue(settings, between)), Q_INT64_C(1200));
        settings.lastGenerated = std::numeric_limits<qint64>::max(); // not one day after the other
        QVERIFY(!nextDue(settings, between).isValid());
    }

private:
    static QDateTime local(const QString &text) { return QDateTime::fromString(text, Qt::ISODate); }
    static ReportSettings settingsWith(const QString &time, const QDateTime &lastGenerated)
    {
        const qint64 seconds = lastGenerated.toSecsSinceEpoch();
        return ReportSettings::fromValues({{"p.enabled", QByteArray("1")},
                                           {"p.emails", "a@b.sk,, ,c@d.sk"},
                                           {"p.time", time},
                                           {"p.lastGenerated", QByteArray::number(seconds)}},
                                          "p.");
    }
};

QTEST_APPLESS_MAIN(TestReportSchedule)
#include "tst_reportschedule.moc"
