#include "reports/dailyattenreport.h"
#include "reports/monthlyattenreport.h"

#include "support/reportbench.h"
#include "support/testhost.h"
#include "support/workbookreader.h"

#include <QDir>
#include <QTest>

#include <memory>

/// What customers' tables hold: a clear line where something is lost, and a report all the same.
class TestBadData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ReportBench::setTimeZone(); }
    void init();
    void cleanup() { bench.reset(); }
    void bothReportsGoOut_data();
    void bothReportsGoOut();
    void names_data();
    void names();
    void manyRecipients();
    void mailAbovePacketLimit();

private:
    void makeBoth(const QStringList &emails = {"a@firma.sk"})
    {
        const QDateTime now(QDate(2023, 11, 1), QTime(7, 0));
        DailyAttenReport(bench->database, nullptr).makeReport(emails, now);
        MonthlyAttenReport(bench->database, nullptr).makeReport(emails, now);
    }

    std::unique_ptr<ReportBench> bench;
};

void TestBadData::init()
{
    bench = std::make_unique<ReportBench>();
    addPeople(bench->schema, 2);
    bench->set("dattenInters", "1");
    bench->set("monthAttenInterrupts", "SC");
}

void TestBadData::bothReportsGoOut_data()
{
    QTest::addColumn<QStringList>("statements");
    const QString day = QString::number(QDate(2023, 11, 1).startOfDay().toSecsSinceEpoch());
    const auto atten = [&day](const char *value) {
        return QStringList{
            "ALTER TABLE atten MODIFY fond TEXT, MODIFY work TEXT, MODIFY diff TEXT, MODIFY shift "
            "TEXT, MODIFY ok INT NULL",
            "ALTER TABLE atten_month MODIFY fond TEXT, MODIFY work TEXT, MODIFY night TEXT",
            "ALTER TABLE atten_data MODIFY duration TEXT, MODIFY iid INT NULL",
            QString(
                "INSERT INTO atten (uid, date, dom, shift, fond, work, diff, ok) VALUES (1, %1, "
                "1, %2, %2, %2, %2, 1)")
                .arg(day, value),
            QString("INSERT INTO atten_month (uid, month, fond, work, night) VALUES (1, 202311, "
                    "%1, %1, %1)")
                .arg(value),
            QString("INSERT INTO atten_data (uid, iid, `from`, duration) VALUES (1, 1002, %1, %2), "
                    "(1, 3, %1, %2), (1, NULL, %1, %2)")
                .arg(day, value)};
    };
    QTest::newRow("NULLs") << atten("NULL") +
                                  QStringList{
                                      "ALTER TABLE people MODIFY surname TEXT NULL, MODIFY name "
                                      "VARCHAR(9) NULL, MODIFY pid INT NULL",
                                      "UPDATE people SET surname = NULL, pid = NULL, title = NULL"};
    QTest::newRow("text") << atten("'sedem'");
    QTest::newRow("negative") << atten("'-9e18'");
    QTest::newRow("huge") << atten("'1e300'");
    QTest::newRow("not finite") << atten("'inf'");
}

void TestBadData::bothReportsGoOut()
{
    QFETCH(QStringList, statements);
    bench->schema.exec(statements);
    makeBoth();
    QCOMPARE(bench->mails(), 2);
    QVERIFY(bench->log.texts(QtCriticalMsg).isEmpty());
    for (const QString &name : QDir(bench->temporary.path()).entryList(QDir::Files))
        QCOMPARE(rowCount(readSheet(bench->temporary.filePath(name))), 3);
}

void TestBadData::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown"); // null: an empty cell
    QTest::newRow("quotes") << "O'Brien \"Jano\" \\"
                            << "O'Brien \"Jano\" \\";
    QTest::newRow("placeholders") << "%1 %2 %s"
                                  << "%1 %2 %s";
    QTest::newRow("like a formula") << "=1+1"
                                    << "=1+1";
    QTest::newRow("like an escape") << "_x0041_ & <b>"
                                    << "_x0041_ & <b>";
    // The driver speaks three-byte UTF-8: what lies beyond arrives as a question mark.
    QTest::newRow("emoji") << "Ján EMOJI"
                           << "Ján ?";
    QTest::newRow("control character") << QString("Ján\x01") << QString();
    QTest::newRow("longer than a cell") << QString(32768, 'x') << QString();
}

void TestBadData::names()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    bench->schema.exec("ALTER TABLE people MODIFY name TEXT");
    QString quoted = name;
    quoted.replace('\\', "\\\\").replace('\'', "\\'");
    bench->schema.exec(QString("UPDATE people SET surname = '', name = REPLACE('") + quoted +
                       "', 'EMOJI', CONVERT(UNHEX('F09F9880') USING utf8mb4))");
    makeBoth();
    QCOMPARE(bench->mails(), 2);
    for (const QString &file : QDir(bench->temporary.path()).entryList(QDir::Files)) {
        const QJsonObject sheet = readSheet(bench->temporary.filePath(file));
        QCOMPARE(cellValue(sheet, "B2"), shown.isNull() ? QJsonValue() : QJsonValue(shown));
    }
}

void TestBadData::manyRecipients()
{
    QStringList recipients;
    for (int i = 0; recipients.size() * 20 < 65536; ++i)
        recipients << QString("prijemca%1@firma.sk").arg(i, 4, 10, QChar('0'));
    bench->set("autoReport.DailyAtten.emails", recipients.join(','));
    bench->set("autoReport.DailyAtten.enabled", "1");
    DailyAttenReport(bench->database, nullptr).doWork();
    QCOMPARE(bench->mails(), recipients.size());
}

void TestBadData::mailAbovePacketLimit()
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

QTEST_GUILESS_MAIN(TestBadData)
#include "tst_baddata.moc"
