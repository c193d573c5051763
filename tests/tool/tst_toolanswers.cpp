#include "tool/tooltest.h"

#include <QJsonDocument>
#include <QTest>

/// The commands that only look: what they say, and what they make of wrong command lines.
class TestToolAnswers : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void usage_data();
    void usage();
    void statusTellsReasons_data();
    void statusTellsReasons();
    void statusOfManySchemas();
    void whyTellsEachRule_data();
    void whyTellsEachRule();
};

void TestToolAnswers::usage_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("text");
    QTest::newRow("surplus") << "status now"
                             << "unexpected argument 'now'";
    QTest::newRow("option") << "status --nonsense"
                            << "'nonsense'";
    QTest::newRow("no report") << "why firm"
                               << "the schema and the report are missing";
    QTest::newRow("weekly") << "why firm weekly"
                            << "it is daily or monthly";
    QTest::newRow("moment") << "why firm daily --at 25:00"
                            << "--at must be";
    QTest::newRow("format") << "preview firm daily --out x.ods"
                            << "end with .xlsx or .xls";
    QTest::newRow("date") << "preview firm daily --out x.xls --date 2023-02-29"
                          << "--date must";
    QTest::newRow("language") << "run firm daily --yes --language de"
                              << "must be sk or en, not";
    QTest::newRow("to") << "run firm daily --to a@firma"
                        << "--to must be one mail address";
    QTest::newRow("nobody to ask") << "run firm daily"
                                   << "give --yes";
    QTest::newRow("mark") << "run firm daily --yes --mark --date 2023-11-14"
                          << "--mark is for";
    QTest::newRow("schema") << "why nobody daily"
                            << "no active schema 'nobody'";
    QTest::newRow("injection") << "why x'OR''=' daily"
                               << "no active schema 'x'OR''=''";
    QTest::newRow("one schema") << "status --schema nobody"
                                << "no active schema 'nobody'";
    QTest::newRow("one database") << "status --single --schema firm"
                                  << "no active schema 'firm'";
}

void TestToolAnswers::usage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, text);
    const Outcome outcome = run(arguments.split(' '));
    QVERIFY2(outcome.errors.contains(text), qPrintable(outcome.errors));
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QString());
}

void TestToolAnswers::statusTellsReasons_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("reason");
    const auto key = [](const char *name, const char *value) {
        return QString("REPLACE INTO vars VALUES ('autoReport.DailyAtten.%1', '%2')")
            .arg(name, value);
    };
    QTest::newRow("well") << "DO 0"
                          << "";
    QTest::newRow("off") << key("enabled", "0") << "";
    QTest::newRow("not found by the scan") << key("enabled", "true") << "switch";
    QTest::newRow("nobody") << key("emails", " , ") << "recipients";
    QTest::newRow("malformed") << key("emails", "a@firma.sk, b@firma") << "recipients";
    QTest::newRow("time") << key("time", "7 hours") << "time";
    QTest::newRow("future") << key("lastGenerated", "1900000000") << "future";
    QTest::newRow("overdue") << key("lastGenerated", "1699941602") << "overdue";
    QTest::newRow("in time for a while")
        << "UPDATE vars SET value = IF(name LIKE '%.time', '08:30', 1699947002) "
           "WHERE name LIKE '%.time' OR name LIKE '%.lastGenerated'"
        << "";
    QTest::newRow("none yesterday")
        << "UPDATE vars SET value = IF(name LIKE '%.time', '10:00', 1699866002) "
           "WHERE name LIKE '%.time' OR name LIKE '%.lastGenerated'"
        << "overdue";
    QTest::newRow("table") << "DROP TABLE brape"
                           << "tables";
    QTest::newRow("column") << "ALTER TABLE atten DROP ok"
                            << "tables";
    QTest::newRow("another report's column") << "ALTER TABLE people DROP pamId"
                                             << "";
    QTest::newRow("settings") << "DROP TABLE vars"
                              << "tables";
    QTest::newRow("queue") << "INSERT INTO emails (`from`, `to`, subject, created) VALUES "
                              "('a', 'b', 'c', UNIX_TIMESTAMP() - 3700)"
                           << "queue";
    QTest::newRow("queue, off") << "INSERT INTO emails (`from`, `to`, subject, created) SELECT "
                                   "'a', 'b', 'c', UNIX_TIMESTAMP() - 3700 FROM (SELECT 1) x; " +
                                       key("enabled", "0")
                                << "queue";
}

void TestToolAnswers::statusTellsReasons()
{
    QFETCH(QString, change);
    QFETCH(QString, reason);
    setUpDailyReport();
    bench->schema.exec(change.split("; "));
    const Outcome outcome = run({"status", "--json"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, reason.isEmpty() ? 0 : 1);
    const QJsonObject object = QJsonDocument::fromJson(outcome.output.toUtf8()).object();
    QCOMPARE(object.value("status").toInt(), outcome.status);
    const QJsonObject daily = object.value("reports").toArray().at(0).toObject();
    QCOMPARE(daily.value("reason").toString(), reason);
    QCOMPARE(daily.value("detail").isNull(), reason.isEmpty());
    QCOMPARE(daily.value("schema").toString(), QString("firm"));
}

void TestToolAnswers::statusOfManySchemas()
{
    setUpDailyReport();
    info->addSchemas({QString(64, 'x')}, bench->schema.name());
    info->addSchemas({"gone"}, "no_such_database");
    Outcome outcome = run({"status"});
    QCOMPARE(outcome.status, 1);
    const QStringList lines = outcome.output.split('\n');
    const QString head = lines.mid(0, 6).join('\n');
    QVERIFY2(head.contains("\nfirm ") && head.contains("2023-11-16 07:00"), qPrintable(head));
    QVERIFY2(lines.at(3).startsWith("gone ") && lines.at(3).endsWith(" unreachable"),
             qPrintable(head));
    for (int line = 0; line < 6; ++line)
        QVERIFY2(lines.at(line).size() <= 120, qPrintable(lines.at(line)));
    QVERIFY2(outcome.output.contains("gone: can not open the database 'no_such_database' on"),
             qPrintable(outcome.output));
    QVERIFY(!outcome.output.contains("secret") && !outcome.output.contains('\033'));

    outcome = run({"status", "--schema", "firm"});
    QCOMPARE(outcome.status, 0);
    QVERIFY(!outcome.output.contains("gone"));
    outcome = run({"status", "--single"}); // the information database is no schema
    QCOMPARE(outcome.status, 1);
    info->exec("UPDATE `schemas` SET token = 'x\nfirm  daily\x1b[2J' WHERE token = 'gone'");
    QVERIFY(run({"status"})
                .output.contains("\nx\uFFFD"
                                 "firm  daily\uFFFD[2J "));
    info->exec("ALTER TABLE `schemas` DROP sid"); // an empty list is no answer
    QCOMPARE(run({"status"}).status, 2);
    QCOMPARE(run({"check"}).status, 2);
}

void TestToolAnswers::whyTellsEachRule_data()
{
    QTest::addColumn<QString>("at");
    QTest::addColumn<QString>("verdicts");
    QTest::addColumn<QString>("next");
    QTest::newRow("now") << ""
                         << "yyyn"
                         << "2023-11-16 07:00:00 CET";
    QTest::newRow("too early") << "2023-11-16 06:59"
                               << "yyny"
                               << "2023-11-16 07:00:00 CET";
    QTest::newRow("due") << "2023-11-16 07:00"
                         << "yyyy"
                         << "2023-11-16 07:00:00 CET";
    QTest::newRow("in the gap") << "2024-03-31 02:30"
                                << "yyny"
                                << "2024-03-31 07:00:00 CEST";
}

void TestToolAnswers::whyTellsEachRule()
{
    QFETCH(QString, at);
    QFETCH(QString, verdicts);
    QFETCH(QString, next);
    setUpDailyReport();
    const Outcome outcome = run(at.isEmpty() ? QStringList{"why", "firm", "daily"}
                                             : QStringList{"why", "firm", "daily", "--at", at});
    QString found;
    for (const QString &line : outcome.output.split('\n'))
        found += line.startsWith("  met ") ? "y" : line.startsWith("  not met ") ? "n" : "";
    QCOMPARE(found, verdicts);
    QVERIFY2(outcome.output.endsWith("\nNext due: " + next + "\n"), qPrintable(outcome.output));
    QCOMPARE(outcome.status, 0);
    QCOMPARE(run({"why", "firm", "monthly"}).status, 1); // it will never be due
}

QTEST_GUILESS_MAIN(TestToolAnswers)
#include "tst_toolanswers.moc"
