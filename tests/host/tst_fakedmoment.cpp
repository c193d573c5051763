#include "support/reportbench.h"
#include "support/workbookreader.h"

#include <QJsonDocument>
#include <QProcess>
#include <QTest>

#include <memory>

namespace
{

constexpr int people = 60;
constexpr int patienceMs = 60000;

// What the company's tables hold, as formulas of person and day; the sheet is reckoned from them.
int workedSeconds(int uid, int day)
{
    return (uid * day % 10) * 3600 + day;
}
int fundSeconds(int uid, int day)
{
    return day % 7 == 0 ? 0 : 28800 + uid;
}
int overtimeSeconds(int uid, int day)
{
    return uid % 3 == 0 ? day * 61 : 0;
}
int shift(int uid)
{
    return uid % 4;
}
int penaltySeconds(int uid, int day)
{
    return uid % 5 == 0 ? day * 30 : 0;
}

QString durationText(int seconds)
{
    if (seconds <= 59)
        return QString();
    return QTime(0, 0).addSecs(seconds).toString("HH:mm:ss");
}

} // namespace

/// The whole road from the host's start to the queued mail, at moments that matter.
class TestFakedMoment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ReportBench::setTimeZone(); }
    void init() { bench = std::make_unique<ReportBench>(); }
    void cleanup() { bench.reset(); }
    void dailyReport_data();
    void dailyReport();
    void previewOfAPastMonth_data();
    void previewOfAPastMonth();

private:
    QStringList databaseOptions() const;
    void fillCompany(const QDate &today) const;
    void serveAt(const QDateTime &moment, const QString &language = "sk") const;
    static QJsonArray expectedRow(int uid, int day);

    std::unique_ptr<ReportBench> bench;
};

void TestFakedMoment::fillCompany(const QDate &today) const
{
    const TestDatabase &schema = bench->schema;
    schema.exec("INSERT INTO `groups` VALUES (1, 'Výroba')");
    schema.exec("INSERT INTO branches VALUES (1, 'Žilina')");
    schema.exec(QString("INSERT INTO people (uid, pid, surname, name, gid) SELECT seq, seq + 100, "
                        "CONCAT('Priezvisko', LPAD(seq, 2, '0')), 'Ľudmila', 1 FROM seq_1_to_%1")
                    .arg(people));
    schema.exec("INSERT INTO brape (uid, bid, since) SELECT uid, 1, 0 FROM people");
    QStringList days;
    QStringList records;
    for (int day = 1; day <= today.day(); ++day) {
        const QDate date(today.year(), today.month(), day);
        const qint64 start = date.startOfDay().toSecsSinceEpoch();
        const qint64 last = date.addDays(1).startOfDay().toSecsSinceEpoch() - 1;
        for (int uid = 1; uid <= people; ++uid) {
            days << QString("(%1, %2, %3, %4, %5, %6, %7, 1)")
                        .arg(uid)
                        .arg(start)
                        .arg(day)
                        .arg(shift(uid))
                        .arg(fundSeconds(uid, day))
                        .arg(workedSeconds(uid, day))
                        .arg(overtimeSeconds(uid, day));
            // On the day's last second: a day of another length would lose it to its neighbour.
            records
                << QString("(%1, 1002, %2, %3)").arg(uid).arg(last).arg(penaltySeconds(uid, day));
        }
    }
    schema.exec("INSERT INTO atten (uid, date, dom, shift, fond, work, diff, ok) VALUES " +
                days.join(','));
    schema.exec("INSERT INTO atten_data (uid, iid, `from`, duration) VALUES " + records.join(','));
}

QStringList TestFakedMoment::databaseOptions() const
{
    return {"--single",
            "--db-host",
            TestServer::host(),
            "--db-port",
            QString::number(TestServer::port()),
            "--db-user",
            TestServer::user(),
            "--db-name",
            bench->schema.name()};
}

void TestFakedMoment::serveAt(const QDateTime &moment, const QString &language) const
{
    QProcess host;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("AUTOREPORT_DB_PASSWORD", TestServer::password());
    environment.insert("LD_PRELOAD", AUTOREPORT_FAKETIME);
    environment.insert("FAKETIME", "@" + moment.toString("yyyy-MM-dd HH:mm:ss"));
    environment.insert("FAKETIME_DONT_FAKE_MONOTONIC", "1");
    environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
    host.setProcessEnvironment(environment);
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.start(AUTOREPORT_PROGRAM,
               QStringList{"serve", "--run-for", "300", "--language", language} +
                   databaseOptions());
    QTRY_VERIFY_WITH_TIMEOUT(bench->lastGenerated("DailyAtten").isValid() ||
                                 host.state() == QProcess::NotRunning,
                             patienceMs);
    host.terminate();
    QVERIFY(host.waitForFinished(patienceMs));
    const QByteArray output = host.readAll();
    QVERIFY2(host.exitCode() == 0 && !output.contains("CRITICAL"), output);
}

QJsonArray TestFakedMoment::expectedRow(int uid, int day)
{
    const auto duration = [](int seconds) {
        const QString text = durationText(seconds);
        return text.isEmpty() ? QJsonValue() : QJsonValue(text);
    };
    const int worked = workedSeconds(uid, day);
    const QJsonValue none;
    return {uid + 100,
            QString("Priezvisko%1 Ľudmila").arg(uid, 2, 10, QChar('0')),
            "Výroba",
            shift(uid) > 0 ? QJsonValue(QString::number(shift(uid))) : none,
            "",
            "Žilina",
            day,
            duration(worked),
            duration(fundSeconds(uid, day) - worked),
            duration(overtimeSeconds(uid, day)),
            none,
            none,
            none,
            duration(penaltySeconds(uid, day))};
}

void TestFakedMoment::dailyReport_data()
{
    QTest::addColumn<QDateTime>("moment");
    QTest::addColumn<QString>("subjectDate");
    const auto row = [](const char *name, const QDate &date, const char *subjectDate) {
        QTest::newRow(name) << QDateTime(date, QTime(7, 0, 5)) << QString(subjectDate);
    };
    row("mid-November", QDate(2023, 11, 15), "15. 11. 2023");
    row("a day of 23 hours", QDate(2024, 3, 31), "31. 3. 2024");
    row("the first of January", QDate(2024, 1, 1), "1. 1. 2024");
}

void TestFakedMoment::dailyReport()
{
    QFETCH(QDateTime, moment);
    QFETCH(QString, subjectDate);
    const QDate today = moment.date();
    fillCompany(today);
    bench->set("autoReport.DailyAtten.enabled", "1");
    bench->set("autoReport.DailyAtten.emails", "a@firma.sk, b@firma.sk");
    bench->set("autoReport.DailyAtten.time", "07:00");
    serveAt(moment);

    const QString file = bench->temporary.filePath(
        QString("DennyReport_%1_%2.xlsx").arg(bench->schema.name(), today.toString("MMyyyy")));
    const QJsonObject sheet = readSheet(file);
    QCOMPARE(sheet.value("name").toString(), "Denný report doch. " + today.toString("MM-yyyy"));
    QCOMPARE(rowCount(sheet), 1 + people * today.day());
    for (int day = 1; day <= today.day(); ++day) {
        for (int uid = 1; uid <= people; ++uid)
            QCOMPARE(sheetRow(sheet, 1 + (day - 1) * people + uid), expectedRow(uid, day));
    }
    const auto mails = bench->schema.rows("SELECT `to`, subject FROM emails ORDER BY mid");
    QCOMPARE(mails.size(), 2);
    QCOMPARE(mails.at(1).at(0).toString(), QString("b@firma.sk"));
    QCOMPARE(mails.at(0).at(1).toString(), "Denný report dochádzky za " + subjectDate);
    const qint64 generated = bench->lastGenerated("DailyAtten").toLongLong();
    QVERIFY(qAbs(generated - moment.toSecsSinceEpoch()) < 60);
}

void TestFakedMoment::previewOfAPastMonth_data()
{
    QTest::addColumn<QString>("headings");
    QTest::addColumn<QString>("subject");
    QTest::newRow("sk") << "OSCISLO|Dovolenka"
                        << "Denný report dochádzky za 30. 10. 2023";
    QTest::newRow("en") << "NUMBER|Holiday leave"
                        << "Daily attendance report of 30. 10. 2023";
}

/// The operator's preview, made today, is what a host mailed then.
void TestFakedMoment::previewOfAPastMonth()
{
    const QString language = QTest::currentDataTag();
    const QDate day(2023, 10, 30);
    fillCompany(day);
    bench->schema.exec("INSERT INTO atten_month (uid, month, fond, work, night, totalSaldo) SELECT "
                       "uid, 202310, 633600, 630000 + uid * 60, uid * 3600, uid FROM people");
    for (const char *report : {"DailyAtten", "MonthlyAtten"}) {
        bench->set(QString("autoReport.%1.enabled").arg(report), "1");
        bench->set(QString("autoReport.%1.emails").arg(report), "a@firma.sk");
    }
    serveAt(QDateTime(day, QTime(7, 0)), language);
    QTEST(bench->schema.value("SELECT subject FROM emails ORDER BY mid DESC").toString(),
          "subject");
    QStringList headings;
    const auto before = bench->schema.rows("CHECKSUM TABLE vars, emails");
    qputenv("AUTOREPORT_DB_PASSWORD", TestServer::password().toUtf8());
    for (const QString kind : {"daily", "monthly"}) {
        const QString preview = bench->temporary.filePath(kind + ".xlsx");
        QCOMPARE(
            QProcess::execute(AUTOREPORT_PROGRAM,
                              QStringList{"preview", bench->schema.name(), kind, "--date",
                                          "2023-10-30", "--language", language, "--out", preview} +
                                  databaseOptions()),
            0);
        const QString name = kind == "daily" ? "DennyReport" : "MesReportDochadzky";
        const QJsonObject served = readSheet(bench->temporary.filePath(
            QString("%1_%2_102023.xlsx").arg(name, bench->schema.name())));
        QCOMPARE(rowCount(served), kind == "daily" ? 1 + 30 * people : 1 + people);
        QCOMPARE(readSheet(preview), served);
        headings << cellValue(served, kind == "daily" ? "A1" : "D1").toString();
    }
    QTEST(headings.join('|'), "headings");
    QCOMPARE(bench->schema.rows("CHECKSUM TABLE vars, emails"), before);
}

QTEST_GUILESS_MAIN(TestFakedMoment)
#include "tst_fakedmoment.moc"
