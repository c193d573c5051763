#include "host/hosttest.h"
#include "host/logline.h"
#include "host/logrepeats.h"

#include <sys/stat.h>

/// The log of a host as its operator reads it: on a terminal or in the service manager's journal.
class TestLog : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheCustomer_data()
    {
        const QString time = R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]\d\d:\d\d CRITICAL )";
        addRow("terminal", "", time);
        addRow("journal", "DEVICE:INODE", "<3>");
        addRow("somebody else's journal", "DEVICE:1", time);
    }

    /// Two customers, one fault: neither hides the other, nor one of its reports the other.
    void namesTheCustomer()
    {
        auto [stream, head] = fetch<QString, QString>(); // head: of a critical line
        const TestDatabase other(TestDatabase::Tables::Schema);
        for (const TestDatabase *schema : {&bench->schema, &other}) {
            addPeople(*schema, 3);
            enableBothReports(*schema, "a@firma.sk, b@firma.sk");
        }
        info->addSchemas({"second"}, other.name());
        environment.insert("TMPDIR", "/no/such");
        struct stat file = {}; // which the service manager names by its device and inode
        QCOMPARE(::stat(qPrintable(log), &file), 0);
        stream.replace("DEVICE", QString::number(file.st_dev));
        environment.insert("JOURNAL_STREAM", stream.replace("INODE", QString::number(file.st_ino)));
        serve();
        QTRY_COMPARE_WITH_TIMEOUT(lines(": No such file or directory").size(), 4, patienceMs);
        QVERIFY(program->stops());
        const QString unsaved("^%1%2: %3 - XLS not saved!$");
        const QString why("%1: %2 - '/no/such/.+': No such");
        for (const QString token : {"firm", "second"}) {
            for (const QString report : {"DailyAttenReport", "MonthlyAttenReport"}) {
                QCOMPARE(lines(unsaved.arg(head, token, report)).size(), 1);
                QCOMPARE(lines(why.arg(token, report)).size(), 1);
            }
        }
        QCOMPARE(lines("^<[2-7]>").size(), head == "<3>" ? lines("").size() : 0);
        QCOMPARE(lines("activateReports|doWork|run ended").size(), 0);
    }

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

    void textControlsNothing()
    {
        QCOMPARE(logLine(LogStyle::Journal, QtInfoMsg, "a\nb\x1b[2J\u009b\u202e\u2066č"),
                 QByteArray("<6>a | b\ufffd[2J\ufffd\ufffd\ufffdč\n"));
        for (const QString marks : {"\u061c\u200e", "\u200f\u2028", "\u2029\u2069"})
            QCOMPARE(logLine(LogStyle::Journal, QtInfoMsg, marks), QByteArray("<6>\ufffd\ufffd\n"));
    }

private:
    void prepare() override
    {
        HostTest::prepare();
        log = bench->temporary.filePath("log");
        writeFile(log, {});
        program->logTo(log);
    }

    QStringList lines(const QString &pattern) const
    {
        const QStringList all = QString(readFile(log)).split('\n', Qt::SkipEmptyParts);
        return all.filter(QRegularExpression(pattern));
    }

    QString log;
};

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
