#include "common/zas.h"

#include "support/testdata.h"

#include <limits>

class TestZas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void durations_data()
    {
        addRow("hours alone lose the sign", Q_INT64_C(-25200), 1U, false, "07");
        addRow("negative below a minute keeps its sign", Q_INT64_C(-59), 2U, false, "-00:00");
        addRow("a whole day is not wrapped", Q_INT64_C(86400), 2U, true, "24:00");
        addRow("one second more is", Q_INT64_C(86401), 3U, true, "00:00:01");
        addRow("negative is never wrapped", Q_INT64_C(-90061), 2U, true, "-25:01");
        addRow("least", std::numeric_limits<qint64>::min(), 3U, false, "-2562047788015215:30:08");
        addRow("largest", std::numeric_limits<qint64>::max(), 3U, false, "2562047788015215:30:07");
    }

    void durations()
    {
        const auto [seconds, format, limit24, text] = fetch<qint64, uint, bool, QString>();
        QCOMPARE(ZAS::tsToTimeString(seconds, format, limit24), text);
        const auto thereAndBack = [seconds](uint precision) {
            return ZAS::timeStringToTs(ZAS::tsToTimeString(seconds, precision, false)).value();
        };
        QCOMPARE(thereAndBack(3), seconds);
        QCOMPARE(thereAndBack(2), seconds - seconds % 60);
    }

    void notADuration()
    {
        for (const char *text : {"", "7", "07:60", "07:05:60", "07:5", "+07:05", " 07:05",
                                 "07:05\n", "--07:05", "7:05:09:01", "2562047788015215:30:08",
                                 "99999999999999999999:00", "-2562047788015215:30:09"})
            QVERIFY2(!ZAS::timeStringToTs(text), text);
    }

    void pointsInTime()
    {
        QLocale::setDefault(QLocale::C);
        const uint ts = at("2024-03-31 14:05:09"); // a day of 23 hours
        const QString date = QLocale::system().toString(QDate(2024, 3, 31), QLocale::ShortFormat);
        QCOMPARE(ZAS::tsToDateTimeString(ts), date + " 14:05");
        QCOMPARE(ZAS::tsToTimeString(25509), QString("07:05"));
        QCOMPARE(ZAS::secondsFromTimestamp(ts), 14U * 3600 + 5 * 60 + 9);
        ZAS::timeSecondPrecision = true;
        QCOMPARE(ZAS::tsToDateTimeString(ts), date + " 14:05:09");
        QCOMPARE(ZAS::tsToTimeStringLimit(90061), QString("01:01:01"));
        ZAS::timeSecondPrecision = false;
        QCOMPARE(ZAS::monthFromTimestamp(at("2020-03-31 23:59:59")), 202003U);
        QCOMPARE(ZAS::monthStrFromTimestamp(at("2020-03-31 23:59:59")), QString("3 / 2020"));
        // Days, the first one's weekday, holidays.
        QCOMPARE(ZAS::workingDaysInMonth(31, 1, 0), 23);
        QCOMPARE(ZAS::workingDaysInMonth(30, 6, 1), 19);
    }

    void calendar_data()
    {
        // Midnight, the next and the previous one, the month's first and last day; the weekday.
        addRow("2024-03-31 23:59:59", "2024-03-31 2024-04-01 2024-03-30 2024-03-01 2024-03-31 7");
        addRow("2024-10-27 00:00:00", "2024-10-27 2024-10-28 2024-10-26 2024-10-01 2024-10-31 7");
        addRow("2024-03-01 12:00:00", "2024-03-01 2024-03-02 2024-02-29 2024-03-01 2024-03-31 5");
        addRow("2023-12-31 12:00:00", "2023-12-31 2024-01-01 2023-12-30 2023-12-01 2023-12-31 7");
    }

    void calendar()
    {
        const auto [days] = fetch<QString>();
        const uint ts = at(QTest::currentDataTag());
        const QStringList found{text(ZAS::midnightFromTs(ts)), text(ZAS::nextMidnight(ts)),
                                text(ZAS::prevMidnight(ts)),   text(ZAS::firstDayOfMonth(ts)),
                                text(ZAS::lastDayOfMonth(ts)), QString::number(ZAS::dayOfWeek(ts))};
        QCOMPARE(found.join(' '), days);
    }

    /// Of the two, the C library chooses by the half of the year that it converted last.
    void midnightComesTwice()
    {
        constexpr uint first = 1445731200;
        qputenv("TZ", "Atlantic/Azores");
        for (const char *asked : {"2015-01-15T12:00:00", "2015-07-15T12:00:00"}) {
            at(asked);
            QCOMPARE(ZAS::midnightFromTs(first + 3600), first);
            at(asked);
            QCOMPARE(ZAS::prevMidnight(first + 25 * 3600), qint64(first));
        }
        qputenv("TZ", "Europe/Bratislava");
    }

    void texts()
    {
        QCOMPARE(ZAS::firstInterruption("[D 1.5-2x][L 0.25]"), QString("D 1.5-2x"));
        QCOMPARE(ZAS::shortcutFromInters("[SC 2 1.5][L 0.25]"), QString("SC 2"));
        for (const char *address : {"jan.novak@firma.sk", "Jan+Mzdy%1@Firma-SK.Travel"})
            QVERIFY2(ZAS::validEmail(address), address);
        for (const char *address : {"jan@firma.s", "jan@firma.abcdefghijklmnop",
                                    "Ján <jan@firma.sk>", " jan@firma.sk", "jan@"})
            QVERIFY2(!ZAS::validEmail(address), address);
    }

private:
    static uint at(const char *text)
    {
        return static_cast<uint>(QDateTime::fromString(text, Qt::ISODate).toSecsSinceEpoch());
    }
    /// Returns the date; for a moment other than midnight, the time as well.
    static QString text(qint64 ts)
    {
        return QDateTime::fromSecsSinceEpoch(ts).toString(Qt::ISODate).remove("T00:00:00");
    }
};

QTEST_GUILESS_MAIN(TestZas)
#include "tst_zas.moc"
