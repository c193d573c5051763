#include "support/reportbench.h"
#include "support/testdata.h"
#include "support/workbookreader.h"

#include <QProcess>

#include <memory>

namespace
{

constexpr int people = 60;
constexpr int patienceMs = 60000;

} // namespace

/// The whole road from the host's start to the queued mail, at moments that matter.
class TestFakedMoment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { bench = std::make_unique<ReportBench>(); }
    void cleanup() { bench.reset(); }
    void bothReports_data();
    void bothReports();
    void previewOfAPastMonth_data();
    void previewOfAPastMonth();

private:
    void fillCompany(const QDate &today) const;
    void serveAt(const QDateTime &moment, const QString &language = "sk") const;
    static QJsonArray expectedRow(int uid, int day);

    std::unique_ptr<ReportBench> bench;
};

/// A month up to `today`, by formulas of person and day; expectedRow() knows them, too.
void TestFakedMoment::fillCompany(const QDate &today) const
{
    const TestDatabase &schema = bench->schema;
    schema.exec({"INSERT INTO `groups` VALUES (1, 'Výroba')",
                 "INSERT INTO branches VALUES (1, 'Žilina')",
                 QString("INSERT INTO people (uid, pid, surname, name, gid) SELECT seq, seq + 100, "
                         "CONCAT('Priezvisko', LPAD(seq, 2, '0')), 'Ľudmila', 1 FROM seq_1_to_%1")
                     .arg(people),
                 "INSERT INTO brape (uid, bid, since) SELECT uid, 1, 0 FROM people"});
    for (int day = 1; day <= today.day(); ++day) {
        const QDate date(today.year(), today.month(), day);
        schema.exec(
            QString("INSERT INTO atten (uid, date, dom, shift, fond, work, diff, ok) SELECT "
                    "uid, %2, %1, uid % 4, IF(%1 % 7 = 0, 0, 28800 + uid), uid * %1 % 10 * "
                    "3600 + %1, IF(uid % 3 = 0, %1 * 61, 0), 1 FROM people")
                .arg(day)
                .arg(date.startOfDay().toSecsSinceEpoch()));
        // On the day's last second: a day of another length would lose it to its neighbour.
        schema.exec(QString("INSERT INTO atten_data (uid, iid, `from`, duration) SELECT uid, 1002, "
                            "%2, IF(uid % 5 = 0, %1 * 30, 0) FROM people")
                        .arg(day)
                        .arg(date.addDays(1).startOfDay().toSecsSinceEpoch() - 1));
    }
    for (const char *report : {"DailyAtten", "MonthlyAtten"}) {
        bench->set(QString("autoReport.%1.enabled").arg(report), "1");
        bench->set(QString("autoReport.%1.emails").arg(report), "a@firma.sk, b@firma.sk");
        bench->set(QString("autoReport.%1.time").arg(report), "07:00");
    }
}

/// Two ticks of a host; its clock runs fast, so that the second one comes soon.
void TestFakedMoment::serveAt(const QDateTime &moment, const QString &language) const
{
    QProcess host;
    host.setProcessEnvironment(
        TestServer::environment(moment.toString("yyyy-MM-dd HH:mm:ss' x20'")));
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.start(AUTOREPORT_PROGRAM, QStringList{"serve", "--single", "--language", language} +
                                       TestServer::options(bench->schema.name()));
    QByteArray output;
    const auto ticks = [&] {
        output += host.readAll();
        return output.count("activateReports()");
    };
    QTRY_VERIFY_WITH_TIMEOUT(ticks() == 2 || host.state() == QProcess::NotRunning, patienceMs);
    host.terminate();
    QVERIFY(host.waitForFinished(patienceMs));
    QVERIFY2(ticks() == 2 && host.exitCode() == 0 && !output.contains("CRITICAL"), output);
}

QJsonArray TestFakedMoment::expectedRow(int uid, int day)
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
    for (const QJsonValue &value : {duration(fund - worked), overtime, none, none, none, penalty})
        row.append(value);
    return row;
}

void TestFakedMoment::bothReports_data()
{
    addColumns<QString, QString>("month", "day");
    addRow("2023-11-15", "11 / 2023", "15. 11. 2023");
    addRow("2024-03-31", "3 / 2024", "31. 3. 2024"); // of 23 hours
    addRow("2024-01-01", "1 / 2024", "1. 1. 2024");
    addRow("2024-12-01", "12 / 2024", "1. 12. 2024");
}

/// Due in the same minute, each goes out once.
void TestFakedMoment::bothReports()
{
    QFETCH(QString, month);
    QFETCH(QString, day);
    const QDate today = QDate::fromString(QTest::currentDataTag(), Qt::ISODate);
    const QDateTime moment(today, QTime(7, 0, 5));
    fillCompany(today);
    serveAt(moment);

    const QString file = bench->temporary.filePath(
        QString("DennyReport_%1_%2.xlsx").arg(bench->schema.name(), today.toString("MMyyyy")));
    const QJsonObject sheet = readSheet(file);
    QCOMPARE(sheet.value("name").toString(), "Denný report doch. " + today.toString("MM-yyyy"));
    QCOMPARE(rowCount(sheet), 1 + people * today.day());
    for (int row = 0; row < people * today.day(); ++row)
        QCOMPARE(sheetRow(sheet, 2 + row), expectedRow(1 + row % people, 1 + row / people));
    QStringList mails;
    for (const auto &mail : bench->schema.rows("SELECT `to`, subject FROM emails ORDER BY mid"))
        mails << mail.at(0).toString() + ": " + mail.at(1).toString();
    const QString monthly = ": Mesačný report dochádzky za " + month;
    const QString daily = ": Denný report dochádzky za " + day;
    QCOMPARE(mails, QStringList({"a@firma.sk" + monthly, "b@firma.sk" + monthly,
                                 "a@firma.sk" + daily, "b@firma.sk" + daily}));
    for (const char *report : {"DailyAtten", "MonthlyAtten"}) {
        const qint64 generated = bench->lastGenerated(report).toLongLong();
        QVERIFY(qAbs(generated - moment.toSecsSinceEpoch()) < 60);
    }
}

void TestFakedMoment::previewOfAPastMonth_data()
{
    addColumns<QString, QString>("headings", "subject");
    addRow("sk", "OSCISLO|Dovolenka", "Denný report dochádzky za 30. 10. 2023");
    addRow("en", "NUMBER|Holiday leave", "Daily attendance report of 30. 10. 2023");
}

/// The operator's preview, made today, is what a host mailed then.
void TestFakedMoment::previewOfAPastMonth()
{
    const QString language = QTest::currentDataTag();
    const QDate day(2023, 10, 30);
    fillCompany(day);
    bench->schema.exec("INSERT INTO atten_month (uid, month, fond, work, night, totalSaldo) SELECT "
                       "uid, 202310, 633600, 630000 + uid * 60, uid * 3600, uid FROM people");
    serveAt(QDateTime(day, QTime(7, 0)), language);
    QTEST(bench->schema.value("SELECT subject FROM emails ORDER BY mid DESC").toString(),
          "subject");
    QStringList headings;
    const auto before = bench->schema.rows("CHECKSUM TABLE vars, emails");
    qputenv("AUTOREPORT_DB_PASSWORD", TestServer::password().toUtf8());
    for (const QString kind : {"daily", "monthly"}) {
        const QString preview = bench->temporary.filePath(kind + ".xlsx");
        const QStringList arguments{
            "preview",  bench->schema.name(), kind,     "--date", "2023-10-30",
            "--single", "--language",         language, "--out",  preview};
        QCOMPARE(QProcess::execute(AUTOREPORT_PROGRAM,
                                   arguments + TestServer::options(bench->schema.name())),
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
