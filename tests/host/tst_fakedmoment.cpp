#include "support/hostprogram.h"
#include "support/reportbench.h"

#include <QElapsedTimer>

/// From the host's start to the queued mail, at critical moments.
class TestFakedMoment : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void bothReports_data()
    {
        addColumns<QString, QString, QString, QString>("language", "monthly", "daily", "headings");
        const auto slovak = [](const char *day, const QString &monthly, const QString &daily) {
            addRow(day, "sk", "Mesačný report dochádzky za " + monthly,
                   "Denný report dochádzky za " + daily, "OSCISLO|Dovolenka");
        };
        slovak("2023-11-15", "11 / 2023", "15. 11. 2023");
        slovak("2024-03-31", "3 / 2024", "31. 3. 2024"); // of 23 hours
        slovak("2024-01-01", "1 / 2024", "1. 1. 2024");
        slovak("2024-12-01", "12 / 2024", "1. 12. 2024");
        addRow("2023-10-30", "en", "Monthly attendance report of 10 / 2023",
               "Daily attendance report of 30. 10. 2023", "NUMBER|Holiday leave");
    }

    /// Due in the same minute, each goes out once; the operator's preview, made today, is the same.
    void bothReports()
    {
        QFETCH(QString, language);
        QFETCH(QString, monthly);
        QFETCH(QString, daily);
        const QDate today = QDate::fromString(QTest::currentDataTag(), Qt::ISODate);
        const QDateTime moment(today, QTime(7, 0, 5));
        fillCompany(today);
        serveAt(moment, language);

        const QJsonObject days = readSheet(bench->file("DennyReport", today));
        QCOMPARE(rowCount(days), 1 + people * today.day());
        for (int row = 0; row < people * today.day(); ++row)
            QCOMPARE(sheetRow(days, 2 + row), expectedRow(1 + row % people, 1 + row / people));
        QStringList mails;
        for (const auto &mail : bench->schema.rows("SELECT `to`, subject FROM emails ORDER BY mid"))
            mails << mail.at(0).toString() + ": " + mail.at(1).toString();
        QCOMPARE(mails, QStringList({"a@firma.sk: " + monthly, "b@firma.sk: " + monthly,
                                     "a@firma.sk: " + daily, "b@firma.sk: " + daily}));
        for (const char *report : {"DailyAtten", "MonthlyAtten"}) {
            const qint64 after =
                bench->lastGenerated(report).toLongLong() - moment.toSecsSinceEpoch();
            QVERIFY2(after >= 0 && after <= served, report);
        }

        const auto before = bench->schema.rows("CHECKSUM TABLE vars, emails");
        const QJsonObject month = readSheet(bench->file("MesReportDochadzky", today));
        QCOMPARE(rowCount(month), 1 + people);
        QCOMPARE(preview("daily", today, language), days);
        QCOMPARE(preview("monthly", today, language), month);
        const QString headings = cellValue(days, "A1").toString() + "|";
        QTEST(headings + cellValue(month, "D1").toString(), "headings");
        QCOMPARE(bench->schema.rows("CHECKSUM TABLE vars, emails"), before);
    }

private:
    static constexpr int people = 60;
    static constexpr int speed = 20; // of the host's clock
    qint64 served = 0;               // seconds of that clock

    /// A month up to `today`, by formulas of person and day; expectedRow() knows them, too.
    void fillCompany(const QDate &today) const
    {
        const QString company = R"(
            INSERT INTO `groups` VALUES (1, 'Výroba');
            INSERT INTO branches VALUES (1, 'Žilina');
            INSERT INTO people (uid, pid, surname, name, gid) SELECT seq, seq + 100,
                CONCAT('Priezvisko', LPAD(seq, 2, '0')), 'Ľudmila', 1 FROM seq_1_to_%1;
            INSERT INTO brape (uid, bid, since) SELECT uid, 1, 0 FROM people;
            INSERT INTO atten_month (uid, month, fond, work, night, totalSaldo)
                SELECT uid, %2, 633600, 630000 + uid * 60, uid * 3600, uid FROM people)";
        bench->schema.exec(company.arg(people).arg(today.toString("yyyyMM")));
        // The penalty is of the day's last second: a day of another length would not have it.
        const QString attendance = R"(
            INSERT INTO atten (uid, date, dom, shift, fond, work, diff, ok)
                SELECT uid, %2, %1, uid % 4, IF(%1 % 7 = 0, 0, 28800 + uid),
                uid * %1 % 10 * 3600 + %1, IF(uid % 3 = 0, %1 * 61, 0), 1 FROM people;
            INSERT INTO atten_data (uid, iid, `from`, duration)
                SELECT uid, 1002, %3 - 1, IF(uid % 5 = 0, %1 * 30, 0) FROM people)";
        for (int day = 1; day <= today.day(); ++day) {
            const QDateTime start = QDate(today.year(), today.month(), day).startOfDay();
            bench->schema.exec(attendance.arg(day)
                                   .arg(start.toSecsSinceEpoch())
                                   .arg(start.date().addDays(1).startOfDay().toSecsSinceEpoch()));
        }
        for (const char *report : {"DailyAtten", "MonthlyAtten"}) {
            bench->set(QString("autoReport.%1.enabled").arg(report), "1");
            bench->set(QString("autoReport.%1.emails").arg(report), "a@firma.sk, b@firma.sk");
            bench->set(QString("autoReport.%1.time").arg(report), "07:00");
        }
    }

    /// At least two ticks of a host; its clock runs fast, so that the second one comes soon.
    void serveAt(const QDateTime &moment, const QString &language)
    {
        HostProgram host;
        QElapsedTimer timer;
        timer.start();
        host.start(
            QStringList{"serve", "--single", "--language", language, "--debug", "1"} +
                TestServer::options(bench->schema.name()),
            TestServer::environment(moment.toString("yyyy-MM-dd HH:mm:ss' x%1'").arg(speed)));
        const bool ticked = host.logs("activateReports()", 2);
        QVERIFY(host.stops());
        served = timer.elapsed() * speed / 1000 + 1;
        QVERIFY2(ticked && !host.log.contains("CRITICAL"), qPrintable(host.log));
    }

    QJsonObject preview(const QString &kind, const QDate &day, const QString &language) const
    {
        HostProgram tool;
        const QString file = bench->temporary.filePath(kind + ".xlsx");
        const QString arguments("preview %1 %2 --date %3 --single --language %4 --out %5");
        const QString date = day.toString(Qt::ISODate);
        tool.start(arguments.arg(bench->schema.name(), kind, date, language, file).split(' ') +
                   TestServer::options(bench->schema.name()));
        return tool.succeeded() ? readSheet(file) : QJsonObject();
    }

    static QJsonArray expectedRow(int uid, int day)
    {
        const auto duration = [](int seconds) {
            const QString text = QTime(0, 0).addSecs(seconds).toString("HH:mm:ss");
            return seconds <= 59 ? QJsonValue() : QJsonValue(text);
        };
        const QJsonValue none;
        const QJsonValue shift = uid % 4 > 0 ? QJsonValue(QString::number(uid % 4)) : none;
        const int worked = uid * day % 10 * 3600 + day;
        const int fund = day % 7 == 0 ? 0 : 28800 + uid;
        const QJsonValue overtime = duration(uid % 3 == 0 ? day * 61 : 0);
        const QJsonValue penalty = duration(uid % 5 == 0 ? day * 30 : 0);
        const QString name = QString("Priezvisko%1 Ľudmila").arg(uid, 2, 10, QChar('0'));
        QJsonArray row{uid + 100, name, "Výroba", shift, "", "Žilina", day, duration(worked)};
        for (const auto &value : {duration(fund - worked), overtime, none, none, none, penalty})
            row.append(value);
        return row;
    }
};

QTEST_GUILESS_MAIN(TestFakedMoment)
#include "tst_fakedmoment.moc"
