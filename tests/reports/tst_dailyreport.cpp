#include "reports/dailyattenreport.h"

#include "support/reportbench.h"
#include "support/workbookreader.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QtMath>

#include <memory>

namespace
{

const QDateTime now(QDate(2023, 11, 2), QTime(7, 0, 5));

QString dayStart(int day)
{
    return QString::number(QDate(2023, 11, day).startOfDay().toSecsSinceEpoch());
}

/// Two people of the month, and four who do not belong to it; one busy day of the first.
void fillSchema(const TestDatabase &schema)
{
    schema.exec(QStringList{
        QString("INSERT INTO `groups` VALUES (1, 'Výroba')"),
        QString("INSERT INTO departs VALUES (1, 'Majster')"),
        QString("INSERT INTO branches VALUES (1, 'Žilina'), (2, 'Košice')"),
        QString("INSERT INTO people (uid, pid, surname, name, title, gid, did, bid, status, "
                "begin, end) VALUES "
                "(1, 101, ' Novák', 'Ján', 'Ing.', 1, 1, 1, 1, 0, NULL), "
                "(2, 102, 'Ťažký', 'Šimon', NULL, NULL, NULL, NULL, 1, 0, %1), "
                "(3, 103, 'Skrytý', '<anonym>', NULL, 1, 1, 1, 1, 0, NULL), "
                "(4, 104, 'Bývalý', 'Ivan', NULL, 1, 1, 1, 0, 0, NULL), "
                "(5, 105, 'Budúci', 'Ivan', NULL, 1, 1, 1, 1, %2, NULL), "
                "(6, 106, 'Minulý', 'Ivan', NULL, 1, 1, 1, 1, 0, %1 - 1)")
            .arg(dayStart(1), dayStart(3)),
        QString("INSERT INTO brape (uid, bid, since) VALUES (1, 2, 20), (1, 1, 10)"),
        QString("INSERT INTO inters VALUES (3, 'D', 'Dovolenka'), (8, 'L', 'Lekár')"),
        QString("INSERT INTO atten (uid, date, dom, shift, fond, work, diff, saldo_p, ok) "
                "VALUES (1, %1, 2, 3, 28800, 25200, 3600, 1800, 1), "
                "(2, %1, 2, 0, 3600, 3541, 59, 0, 1)")
            .arg(dayStart(2)),
        QString("INSERT INTO atten_data (uid, iid, `from`, duration, del) VALUES "
                "(1, 1000, %1, 60, 0), (1, 1001, %1, 59, 0), (1, 1002, %1, 1800, 0), "
                "(1, 1002, %1 + 1, 1800, 0), (1, 1003, %2 - 1, 7200, 0), "
                "(1, 1003, %2, 9, 0), (1, 1004, %1, 7777, 0), (1, 3, %1, 1800, 0), "
                "(1, 3, %1, 3600, 0), (1, 8, %1, 900, 0), (1, 8, %1, 900, 1), "
                "(1, 1, %1, 25200, 0)")
            .arg(dayStart(2), dayStart(3))});
}

/// A binary book has no empty text: such a cell is blank there.
QJsonObject emptyTextAsBlank(QJsonObject sheet)
{
    QJsonObject cells = sheet.value("cells").toObject();
    for (const QString &reference : cells.keys()) {
        QJsonObject cell = cells.value(reference).toObject();
        if (cell.value("value") != QJsonValue(""))
            continue;
        cell.insert("type", "blank");
        cell.insert("value", QJsonValue());
        cells.insert(reference, cell);
    }
    sheet.insert("cells", cells);
    return sheet;
}

} // namespace

class TestDailyReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init()
    {
        bench = std::make_unique<ReportBench>();
        fillSchema(bench->schema);
    }
    void cleanup() { bench.reset(); }
    void rows_data();
    void rows();
    void layout();
    void mailsAndBookkeeping();
    void survivesFailedQueries_data();
    void survivesFailedQueries();
    void endsWithoutMail_data();
    void endsWithoutMail();
    void unreadableFile();
    void onlyWhenDue();
    void monthKeys();

private:
    QString file(const char *suffix = ".xlsx") const
    {
        return bench->temporary.filePath(
            QString("DennyReport_%1_112023%2").arg(bench->schema.name(), suffix));
    }
    void makeReport(const QStringList &emails = {QString("a@firma.sk")})
    {
        DailyAttenReport(bench->database, nullptr).makeReport(emails, now);
    }
    QVariant lastGenerated() const { return bench->lastGenerated("DailyAtten"); }

    std::unique_ptr<ReportBench> bench;
};

void TestDailyReport::initTestCase()
{
    ReportBench::setTimeZone();
}

void TestDailyReport::rows_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("cells");

    const auto row = [](const char *name, const char *options, const char *cells) {
        QTest::newRow(name) << QString::fromUtf8(options) << QString::fromUtf8(cells);
    };
    const char *who = R"(101,"Novák Ján Ing.","Výroba","3","Majster",)";
    const auto busyDay = [&](const char *rest) {
        return QByteArray("[") + who + rest + "]";
    };

    row("no options", "",
        busyDay(R"("Košice",2,"07:00:00","01:00:00","01:00:00","00:01:00",null,"02:00:00",)"
                R"("01:00:00")"));
    row("decimal time", "dattenIsTimeDec",
        busyDay(R"("Košice",2,7,1,1,0.016666666666666666,null,2,1)"));
    row("minus sign", "dattenIsMinusSign",
        busyDay(R"("Košice",2,"07:00:00","-01:00:00","01:00:00","00:01:00",null,"02:00:00",)"
                R"("01:00:00")"));
    row("interruptions", "dattenInters",
        busyDay(R"("Košice",2,"07:00:00","01:00:00","01:00:00","00:01:00",null,"02:00:00",)"
                R"("01:00:00","[D 01:30:00-2x][L 00:15:00]")"));
    row("advanced overtime", "advancedOvertime",
        busyDay(R"("Košice",2,"07:00:00","01:00:00","00:30:00","00:01:00",null,"02:00:00",)"
                R"("01:00:00")"));
    row("home branch", "dattenHomeBranch",
        busyDay(R"("Žilina",2,"07:00:00","01:00:00","01:00:00","00:01:00",null,"02:00:00",)"
                R"("01:00:00")"));
    row("all at once",
        "dattenIsTimeDec dattenIsMinusSign dattenInters advancedOvertime dattenHomeBranch",
        busyDay(R"("Žilina",2,7,-1,0.5,0.016666666666666666,null,2,1,"[D 1.5-2x][L 0.25]")"));
}

/// The row of the second day and the first person: the sheet has two people a day.
void TestDailyReport::rows()
{
    QFETCH(QString, options);
    QFETCH(QString, cells);
    for (const QString &option : options.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        bench->set(option, QString("1"));
    makeReport();
    const QJsonObject book = readSheet(file());
    const QJsonArray expected = QJsonDocument::fromJson(cells.toUtf8()).array();
    QCOMPARE(sheetRow(book, 4), expected);
    QCOMPARE(rowCount(book), 5);

    // The binary book holds the same, cell by cell, with looks, widths and page set-up.
    bench->set("exportUseXLSX", "0");
    makeReport();
    QCOMPARE(readSheet(file(".xls")), emptyTextAsBlank(book));
}

void TestDailyReport::layout()
{
    bench->set("dattenIsTimeDec", "1");
    bench->set("dattenInters", "1");
    makeReport();
    const QJsonObject sheet = readSheet(file());
    QCOMPARE(sheet.value("name").toString(), QString("Denný report doch. 11-2023"));
    QCOMPARE(sheetRow(sheet, 1),
             QJsonArray({"OSCISLO", "MENO", "SKUPINA", "ZMENA", "ZARADENIE", "STREDISKO", "DEN",
                         "ODPRACOVANY CAS", "NEODPRACOVANY CAS", "NADCAS", "NEUZNANY CAS",
                         "ZAOKRUHLENIE", "POSUN", "PENALIZACIA", "PRERUSENIA"}));
    // People of the day before people of the next; the second person has a name and nothing else.
    QCOMPARE(cellValue(sheet, "G2"), QJsonValue(1));
    QCOMPARE(cellValue(sheet, "B3"), QJsonValue("Ťažký Šimon"));
    QCOMPARE(cellValue(sheet, "D5"), QJsonValue());
    QCOMPARE(cellValue(sheet, "H5"), QJsonValue(3541 / 3600.0));
    QCOMPARE(cellValue(sheet, "I5"), QJsonValue()); // 59 seconds

    const QJsonObject cells = sheet.value("cells").toObject();
    const auto look = [&cells](const char *cell) {
        const QJsonObject all = cells.value(cell).toObject();
        const QJsonObject top = all.value("borders").toObject().value("top").toObject();
        const QJsonObject font = all.value("font").toObject();
        return QString("%1 %2pt%3, %4, %5, %6")
            .arg(font.value("name").toString(), QString::number(font.value("size").toInt()),
                 font.value("bold").toBool() ? " bold" : "", all.value("horizontal").toString(),
                 all.value("numberFormat").toString(), top.value("style").toString());
    };
    QCOMPARE(look("B1"), QString("MS Shell Dlg 2 10pt, general, General, medium"));
    QCOMPARE(look("A4"), QString("MS Shell Dlg 2 10pt, general, General, "));
    QCOMPARE(look("D4"), QString("MS Shell Dlg 2 10pt, center, General, "));
    QCOMPARE(look("H4"), QString("MS Shell Dlg 2 10pt, right, #0.00, "));

    // Stored widths hold five pixels of padding beside the digits of seven pixels each.
    const QJsonObject widths = sheet.value("columnWidths").toObject();
    const QHash<QString, int> chars{{"B", 17}, {"C", 20}, {"D", 10}, {"E", 20}, {"F", 20},
                                    {"G", 4},  {"H", 20}, {"N", 20}, {"O", 26}};
    for (auto width = chars.begin(); width != chars.end(); ++width)
        QCOMPARE(qFloor(widths.value(width.key()).toDouble()), width.value());
    QVERIFY(!widths.contains("A"));

    const QJsonObject margins = sheet.value("margins").toObject();
    for (const char *side : {"left", "right", "top"})
        QCOMPARE(margins.value(side).toDouble(), 0.1968);
    QCOMPARE(margins.value("footer").toDouble(), 0.5);
    QCOMPARE(sheet.value("footer").toString(), QString("Strana &P/&N"));
    QCOMPARE(sheet.value("freeze").toString(), QString("A2"));
    QCOMPARE(sheet.value("printTitles").toString(), QString("$1:$1"));
    QVERIFY(sheet.value("landscape").toBool() && sheet.value("printGridLines").toBool());
    QCOMPARE(sheet.value("fitToWidth").toInt(), 1);
    QCOMPARE(sheet.value("fitToHeight").toInt(), 0);
}

void TestDailyReport::mailsAndBookkeeping()
{
    bench->set("globalEmail", "mzdy@firma.sk");
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    makeReport({"a@firma.sk", " ", " b@firma.sk "});

    const auto queued =
        bench->schema.rows("SELECT `from`, `to`, subject, body, type, status, aid, uid, "
                           "data FROM emails ORDER BY mid");
    QCOMPARE(queued.size(), 2);
    QCOMPARE(queued.at(0).at(1).toString(), "a@firma.sk");
    QCOMPARE(queued.at(1).at(1).toString(), "b@firma.sk");
    const QVariantList &mail = queued.at(0);
    QCOMPARE(mail.at(0).toString(), "mzdy@firma.sk");
    QCOMPARE(mail.at(2).toString(), "Denný report dochádzky za 2. 11. 2023");
    QCOMPARE(mail.at(3).toString(),
             "Denný report dochádzky sa nachádza v prílohe.\n\n\nTento e-mail bol vygenerovaný "
             "automaticky dochádzkovým systémom ZAS (modul AutoReport).");
    QCOMPARE(mail.at(4).toString() + mail.at(5).toString(), "EQ");
    QCOMPARE(mail.at(6).toInt(), 0);
    QVERIFY(mail.at(7).isNull());

    const QJsonArray attachments =
        QJsonDocument::fromJson(mail.at(8).toByteArray()).object().value("attachments").toArray();
    QCOMPARE(attachments.size(), 1);
    const QJsonObject attachment = attachments.at(0).toObject();
    QCOMPARE(attachment.value("type").toString(),
             "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet");
    QCOMPARE(attachment.value("name").toString(), QFileInfo(file()).fileName());
    QFile saved(file());
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(QByteArray::fromBase64(attachment.value("content").toString().toLatin1()),
             saved.readAll());
    QVERIFY(mail.at(8).toByteArray().startsWith("{\n    \"attachments\": [\n"));

    QVERIFY(lastGenerated().toLongLong() >= before);
}

void TestDailyReport::survivesFailedQueries_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("warning");
    QTest::addColumn<int>("times"); // two days, two people

    const auto row = [](const char *name, const char *statement, const char *warning, int times) {
        QTest::newRow(name) << QString(statement) << QString(warning) << times;
    };
    row("branches", "DROP TABLE brape", "DailyAttenReport::makeReport() branch SQL error: ", 1);
    row("shifts", "ALTER TABLE atten DROP COLUMN shift",
        "DailyAttenReport::loadShiftsForMonth failed: ", 1);
    row("attendance", "ALTER TABLE atten DROP COLUMN fond",
        "DailyAttenReport::makeReport() atten SQL error: ", 4);
    row("overtime", "ALTER TABLE atten DROP COLUMN ok",
        "DailyAttenReport::makeReport() overtime SQL error: ", 4);
    row("corrections", "ALTER TABLE atten_data RENAME COLUMN duration TO length",
        "DailyAttenReport::makeReport() pseudo inters SQL error: ", 4);
    row("interruptions", "DROP TABLE inters",
        "DailyAttenReport::makeReport() inters SQL error: ", 4);
}

void TestDailyReport::survivesFailedQueries()
{
    QFETCH(QString, statement);
    QFETCH(QString, warning);
    bench->set("dattenInters", "1");
    bench->schema.exec(statement);
    makeReport();
    QTEST(bench->log.countContaining(warning), "times");
    QCOMPARE(bench->mails(), 1);
    QCOMPARE(rowCount(readSheet(file())), 5);
}

void TestDailyReport::endsWithoutMail_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("recipient");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *name, const char *statement, const char *recipient,
                        const char *line) {
        QTest::newRow(name) << QString(statement) << QString(recipient) << QString(line);
    };
    row("people query", "DROP TABLE people", "a@firma.sk",
        "DailyAttenReport::makeReport() people SQL error: ");
    row("no people", "DELETE FROM people", "a@firma.sk", "DailyAttenReport - no people!");
    row("a folder stands in the way", "", "a@firma.sk", "DailyAttenReport - XLS not saved!");
    row("only blank recipients", "SELECT 1", "  ", "");
    row("queue refuses", "ALTER TABLE emails DROP COLUMN subject", "a@firma.sk",
        "DailyAttenReport::makeReport() - mail not created!");
}

void TestDailyReport::endsWithoutMail()
{
    QFETCH(QString, statement);
    QFETCH(QString, recipient);
    QFETCH(QString, line);
    if (statement.isEmpty())
        QVERIFY(QDir().mkpath(file()));
    else
        bench->schema.exec(statement);
    makeReport({recipient});
    QVERIFY(line.isEmpty() || bench->log.countContaining(line) == 1);
    QCOMPARE(bench->mails(), 0);
    QVERIFY(!lastGenerated().isValid());
}

void TestDailyReport::unreadableFile()
{
    const MailRecord mail =
        DailyAttenReport(bench->database, nullptr).makeMail("/no/such/file.xlsx");
    QVERIFY(mail.data.isEmpty());
    QCOMPARE(mail.from, QString("autoreport@localhost"));
    QCOMPARE(bench->log.count(QtCriticalMsg, "DailyAttenReport makeMail - can not open file "
                                             "'/no/such/file.xlsx' for read!"),
             1);
}

void TestDailyReport::onlyWhenDue()
{
    DailyAttenReport report(bench->database, nullptr);
    bench->set("autoReport.DailyAtten.enabled", "1");
    report.doWork();
    QCOMPARE(bench->log.count(QtWarningMsg, "DailyAttenReport - no e-mail addresses!"), 1);
    bench->set("autoReport.DailyAtten.emails", "a@firma.sk");
    report.doWork();
    QCOMPARE(bench->mails(), 1);
    report.doWork();
    QCOMPARE(bench->mails(), 1);
    QCOMPARE(bench->log.count(QtInfoMsg, "DailyAttenReport::doWork()"), 3);
}

void TestDailyReport::monthKeys()
{
    DailyAttenReport report(bench->database, nullptr);
    QCOMPARE(report.monthToDate(202311), QDate(2023, 11, 1));
    QVERIFY(!report.monthToDate(202313).isValid());
    QCOMPARE(report.dateToMonth(QDate(2024, 2, 29)), 202402U);
}

QTEST_GUILESS_MAIN(TestDailyReport)
#include "tst_dailyreport.moc"
