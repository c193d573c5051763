#include "reports/dailyattenreport.h"
#include "reports/monthlyattenreport.h"
#include "reports/reportrun.h"

#include "support/reportbench.h"
#include "support/testhost.h"
#include "support/workbookreader.h"

#include <QDir>
#include <QJsonDocument>
#include <QTest>

#include <memory>

/// What both reports do alike: mails, and faults of all kinds, which cost what they must and a line
/// in the log.
class TestBothReports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ReportBench::setTimeZone(); }
    void init();
    void cleanup() { bench.reset(); }
    void mails_data();
    void mails();
    void nothingToMail();
    void onlyWhenDue();
    void failedQueries_data();
    void failedQueries();
    void noMail_data();
    void noMail();
    void values_data();
    void values();
    void names_data();
    void names();
    void manyRecipients();
    void mailAbovePacketLimit();
    void moreRowsThanXlsHas();

private:
    /// On the first of a month, when both are about the same day.
    void makeBoth(const QStringList &emails = {"a@firma.sk"})
    {
        const QDateTime now(QDate(2023, 11, 1), QTime(7, 0));
        DailyAttenReport(bench->database, nullptr).makeReport(emails, now);
        MonthlyAttenReport(bench->database, nullptr).makeReport(emails, now);
    }
    QString file(const QString &report) const
    {
        return bench->temporary.filePath(report + '_' + bench->schema.name() + "_112023.xlsx");
    }
    void checkBothWentOut() const
    {
        QCOMPARE(bench->mails(), 2);
        for (const char *report : {"DennyReport", "MesReportDochadzky"})
            QCOMPARE(rowCount(readSheet(file(report))), 3);
        QVERIFY(bench->log.texts(QtCriticalMsg).isEmpty());
    }

    std::unique_ptr<ReportBench> bench;
};

void TestBothReports::init()
{
    bench = std::make_unique<ReportBench>();
    addPeople(bench->schema, 2);
    bench->set("dattenInters", "1");
    bench->set("monthAttenInterrupts", "SC");
}

void TestBothReports::mails_data()
{
    QTest::addColumn<int>("mail"); // its place in the queue
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    const QString automatic =
        "%1 report dochádzky sa nachádza v prílohe.\n\n\nTento e-mail bol vygenerovaný "
        "automaticky dochádzkovým systémom ZAS";
    QTest::newRow("daily") << 0 << "DennyReport"
                           << "Denný report dochádzky za 1. 11. 2023"
                           << automatic.arg("Denný") + " (modul AutoReport).";
    QTest::newRow("monthly") << 2 << "MesReportDochadzky"
                             << "Mesačný report dochádzky za 11 / 2023"
                             << automatic.arg("Mesačný") + ".";
}

void TestBothReports::mails()
{
    QFETCH(int, mail);
    QFETCH(QString, report);
    bench->set("globalEmail", "mzdy@firma.sk");
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    makeBoth({"a@firma.sk", " ", " b@firma.sk "});

    const auto queued = bench->schema.rows("SELECT subject, body, `from`, `to`, type, status, aid, "
                                           "uid IS NULL, data FROM emails ORDER BY mid");
    QCOMPARE(queued.size(), 4);
    QTEST(queued.at(mail).at(0).toString(), "subject");
    QTEST(queued.at(mail).at(1).toString(), "body");
    QCOMPARE(queued.at(mail).mid(2, 6),
             (QVariantList{"mzdy@firma.sk", "a@firma.sk", "E", "Q", 0, 1}));
    QCOMPARE(queued.at(mail + 1).at(3).toString(), QString("b@firma.sk"));

    const QByteArray data = queued.at(mail).at(8).toByteArray();
    QVERIFY(data.startsWith("{\n    \"attachments\": [\n"));
    QFile saved(file(report));
    QVERIFY(saved.open(QIODevice::ReadOnly));
    const QJsonObject attachment{
        {"type", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"},
        {"name", QFileInfo(saved).fileName()},
        {"content", QString(saved.readAll().toBase64())}};
    QCOMPARE(QJsonDocument::fromJson(data).object(),
             QJsonObject({{"attachments", QJsonArray{attachment}}}));
    QVERIFY(bench->lastGenerated("DailyAtten").toLongLong() >= before);
    QVERIFY(bench->lastGenerated("MonthlyAtten").toLongLong() >= before);
}

void TestBothReports::nothingToMail()
{
    makeBoth({"  "});
    QCOMPARE(bench->mails(), 0);
    QVERIFY(!bench->lastGenerated("DailyAtten").isValid());

    const QString path = "/no/such/file.xlsx";
    for (const MailRecord &mail : {DailyAttenReport(bench->database, nullptr).makeMail(path),
                                   MonthlyAttenReport(bench->database, nullptr).makeMail(path)}) {
        QVERIFY(mail.data.isEmpty());
        QCOMPARE(mail.from, QString("autoreport@localhost"));
    }
    QCOMPARE(bench->log.countContaining("makeMail - can not open file '" + path + "' for read!"),
             2);
}

/// Both in the same minute, and each once.
void TestBothReports::onlyWhenDue()
{
    DailyAttenReport daily(bench->database, nullptr);
    MonthlyAttenReport monthly(bench->database, nullptr);
    const auto tick = [&] {
        daily.doWork();
        monthly.doWork();
        return bench->mails();
    };
    for (const char *report : {"autoReport.DailyAtten.", "autoReport.MonthlyAtten."}) {
        bench->set(QString(report) + "enabled", "1");
        bench->set(QString(report) + "time", "7"); // none: the day's first tick
    }
    QCOMPARE(tick(), 0);
    for (const char *report : {"Daily", "Monthly"}) {
        const QString warning = QString("%1AttenReport - no e-mail addresses!").arg(report);
        QCOMPARE(bench->log.count(QtWarningMsg, warning), 1);
        bench->set(QString("autoReport.%1Atten.emails").arg(report), " ,a@firma.sk");
    }
    QCOMPARE(tick(), 2);
    QCOMPARE(tick(), 2);
    QCOMPARE(bench->log.count(QtInfoMsg, "DailyAttenReport::doWork()"), 3);
}

void TestBothReports::failedQueries_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QStringList>("warnings"); // what they begin with, of all that there are

    const QString daily = "DailyAttenReport::makeReport() %1 SQL error: ";
    const QString monthly = "MonthlyAttenReport::makeReport() %1 ERROR: ";
    const auto row = [](const char *name, const char *statement, const QStringList &warnings) {
        QTest::newRow(name) << QString(statement) << warnings;
    };
    row("branches", "DROP TABLE brape", {daily.arg("branch")});
    row("shifts", "ALTER TABLE atten DROP shift",
        {"DailyAttenReport::loadShiftsForMonth failed: "});
    row("attendance", "ALTER TABLE atten DROP fond", {daily.arg("atten"), daily.arg("atten")});
    row("overtime", "ALTER TABLE atten DROP ok", {daily.arg("overtime"), daily.arg("overtime")});
    row("corrections", "ALTER TABLE atten_data DROP duration",
        {daily.arg("pseudo inters"), daily.arg("inters"), daily.arg("pseudo inters"),
         daily.arg("inters"), monthly.arg("atten_data")});
    row("kinds of interruption", "DROP TABLE inters",
        {daily.arg("inters"), daily.arg("inters"), monthly.arg("inters")});
    row("totals", "ALTER TABLE atten_month DROP saldo_c", {monthly.arg("atten_month")});
    row("hours worked", "ALTER TABLE atten_month DROP work",
        {monthly.arg("atten_month"), monthly.arg("work")});
}

void TestBothReports::failedQueries()
{
    QFETCH(QString, statement);
    QFETCH(QStringList, warnings);
    bench->schema.exec(statement);
    makeBoth();
    QVERIFY(bench->log.begin(QtWarningMsg, warnings));
    checkBothWentOut();
}

void TestBothReports::noMail_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("line"); // of both, the class put in
    // A queue that takes nothing does not make the monthly report come again.
    QTest::addColumn<bool>("monthlyCounts");

    const auto row = [](const char *name, const char *statement, const char *folder,
                        const char *line, bool monthlyCounts) {
        QTest::newRow(name) << statement << folder << line << monthlyCounts;
    };
    const char *unsaved = "%1 - XLS not saved!";
    row("people query", "DROP TABLE people", "", "%1::makeReport() people SQL ", false);
    row("no people", "DELETE FROM people", "", "%1 - no people!", false);
    row("the file is a folder", "DO 0", "", unsaved, false);
    row("read-only folder", "DO 0", "/proc", unsaved, false);
    row("missing folder", "DO 0", "/no/such", unsaved, false);
    row("queue refuses", "ALTER TABLE emails DROP subject", "",
        "%1::makeReport() - mail not created!", true);
}

void TestBothReports::noMail()
{
    QFETCH(QString, statement);
    QFETCH(QString, folder);
    QFETCH(QString, line);
    bench->schema.exec(statement);
    if (!folder.isEmpty())
        qputenv("TMPDIR", folder.toLocal8Bit());
    else if (statement == "DO 0")
        QVERIFY(QDir().mkpath(file("DennyReport")) && QDir().mkpath(file("MesReportDochadzky")));
    makeBoth();
    for (const char *report : {"DailyAttenReport", "MonthlyAttenReport"})
        QCOMPARE(bench->log.countContaining(line.arg(report)), 1);
    QCOMPARE(bench->mails(), 0);
    QVERIFY(!bench->lastGenerated("DailyAtten").isValid());
    QTEST(bench->lastGenerated("MonthlyAtten").isValid(), "monthlyCounts");
}

void TestBothReports::values_data()
{
    QTest::addColumn<QString>("value");
    for (const char *value : {"NULL", "'sedem'", "'-9e18'", "'1e300'", "'inf'"})
        QTest::newRow(value) << value;
}

void TestBothReports::values()
{
    QFETCH(QString, value);
    const QString day = QString::number(QDate(2023, 11, 1).startOfDay().toSecsSinceEpoch());
    bench->schema.exec(QStringList{
        "ALTER TABLE atten MODIFY fond TEXT, MODIFY work TEXT, MODIFY diff TEXT, MODIFY shift "
        "TEXT, MODIFY ok INT NULL",
        "ALTER TABLE atten_month MODIFY fond TEXT, MODIFY work TEXT, MODIFY night TEXT",
        "ALTER TABLE atten_data MODIFY duration TEXT, MODIFY iid INT NULL",
        QString("INSERT INTO atten (uid, date, dom, shift, fond, work, diff, ok) VALUES (1, %1, 1, "
                "%2, %2, %2, %2, 1)")
            .arg(day, value),
        QString("INSERT INTO atten_month (uid, month, fond, work, night) VALUES (1, 202311, %1, "
                "%1, %1)")
            .arg(value),
        QString("INSERT INTO atten_data (uid, iid, `from`, duration) VALUES (1, 1002, %1, %2), (1, "
                "3, %1, %2), (1, NULL, %1, %2)")
            .arg(day, value)});
    if (value == "NULL")
        bench->schema.exec(QStringList{"ALTER TABLE people MODIFY surname TEXT NULL, MODIFY name "
                                       "VARCHAR(9) NULL, MODIFY pid INT NULL",
                                       "UPDATE people SET surname = NULL, pid = NULL"});
    makeBoth();
    checkBothWentOut();
}

void TestBothReports::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown"); // null: an empty cell
    for (const char *kept : {"O'Brien \"Jano\" \\", "%1 %2 %s", "=1+1", "_x0041_ & <b>"})
        QTest::newRow(kept) << kept << kept;
    // The driver speaks three-byte UTF-8: what lies beyond arrives as a question mark.
    QTest::newRow("emoji") << "Ján EMOJI"
                           << "Ján ?";
    QTest::newRow("control character") << QString("Ján\x01") << QString();
    QTest::newRow("longer than a cell") << QString(32768, 'x') << QString();
}

void TestBothReports::names()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    bench->schema.exec("ALTER TABLE people MODIFY name TEXT");
    name.replace('\\', "\\\\").replace('\'', "\\'");
    bench->schema.exec(QString("UPDATE people SET surname = '', name = REPLACE('") + name +
                       "', 'EMOJI', CONVERT(UNHEX('F09F9880') USING utf8mb4))");
    makeBoth();
    checkBothWentOut();
    for (const char *report : {"DennyReport", "MesReportDochadzky"})
        QCOMPARE(cellValue(readSheet(file(report)), "B2"),
                 shown.isNull() ? QJsonValue() : QJsonValue(shown));
}

void TestBothReports::manyRecipients()
{
    QStringList recipients;
    for (int i = 0; recipients.size() * 20 < 65536; ++i)
        recipients << QString("prijemca%1@firma.sk").arg(i, 4, 10, QChar('0'));
    bench->set("autoReport.DailyAtten.emails", recipients.join(','));
    bench->set("autoReport.DailyAtten.enabled", "1");
    DailyAttenReport(bench->database, nullptr).doWork();
    QCOMPARE(bench->mails(), recipients.size());
}

void TestBothReports::mailAbovePacketLimit()
{
    bench->schema.exec("DELETE FROM people");
    addPeople(bench->schema, 2000);
    bench->schema.exec("SET GLOBAL max_allowed_packet = 16384");
    bench->database.close();
    QVERIFY(bench->database.open());
    makeBoth();
    bench->schema.exec("SET GLOBAL max_allowed_packet = 67108864");
    QCOMPARE(bench->mails(), 0);
    QCOMPARE(bench->log.countContaining("mail not created!"), 2);
    QVERIFY(!bench->lastGenerated("DailyAtten").isValid());
}

/// The heading takes one of the 65,536 rows.
void TestBothReports::moreRowsThanXlsHas()
{
    const QString path = bench->temporary.filePath("p.xls");
    const ReportRun run{{}, QDateTime(QDate(2023, 11, 1), QTime(7, 0))};
    for (const int people : {65536, 65535}) {
        bench->schema.exec("DELETE FROM people");
        addPeople(bench->schema, people);
        const bool saved = MonthlyAttenReport(bench->database, nullptr).saveWorkbook(path, run);
        QCOMPARE(saved, people == 65535);
        QCOMPARE(QFile::exists(path), saved);
        QCOMPARE(bench->log.count(QtCriticalMsg, "MonthlyAttenReport - XLS not saved!"), 1);
    }
}

QTEST_GUILESS_MAIN(TestBothReports)
#include "tst_bothreports.moc"
