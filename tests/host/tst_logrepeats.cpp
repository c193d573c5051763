#include "host/logrepeats.h"

#include <QTest>

class TestLogRepeats : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// An error that recurs at every tick for three hours, and another that occurs once.
    void everyMinute()
    {
        constexpr qint64 minuteMs = 60000;
        constexpr qint64 hourMs = 60 * minuteMs;
        LogRepeats repeats;
        int shown = 0;
        QStringList summaries;
        for (int minute = 0; minute <= 180; ++minute) {
            summaries += repeats.takeSummaries(minute * minuteMs);
            shown += repeats.isShown("queue %1 full", minute * minuteMs) ? 1 : 0;
            if (minute == 30)
                QVERIFY(repeats.isShown("no people", minute * minuteMs));
        }
        QCOMPARE(shown, 1);
        summaries += repeats.takeSummaries(9 * hourMs); // the last one of the third hour
        QCOMPARE(summaries, QStringList({"queue %1 full (59 times in the last hour)",
                                         "queue %1 full (60 times in the last hour)",
                                         "queue %1 full (60 times in the last hour)",
                                         "queue %1 full (1 times in the last hour)"}));
        QVERIFY2(repeats.isShown("queue %1 full", 9 * hourMs), "back after silence");
    }
};

QTEST_APPLESS_MAIN(TestLogRepeats)
#include "tst_logrepeats.moc"
