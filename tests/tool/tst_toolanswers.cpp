#include "tool/tooltest.h"

#include <QJsonDocument>

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
    addColumns<QString, QString>("arguments", "text");
    addRow("surplus", "status now", "unexpected argument 'now'");
    addRow("option", "status --nonsense", "'nonsense'");
    addRow("no report", "why firm", "the schema and the report are missing");
    addRow("weekly", "why firm weekly", "it is daily or monthly");
    addRow("moment", "why firm daily --at 25:00", "--at must be");
    addRow("format", "preview firm daily --out x.ods", "end with .xlsx or .xls");
    addRow("date", "preview firm daily --out x.xls --date 2023-02-29", "--date must");
    addRow("language", "run firm daily --yes --language de", "must be sk or en, not");
    addRow("to", "run firm daily --to a@firma", "--to must be one mail address");
    addRow("nobody to ask", "run firm daily", "give --yes");
    addRow("mark", "run firm daily --yes --mark --date 2023-11-14", "--mark is for");
    addRow("nothing to set", "set firm daily", "nothing to set");
    addRow("both", "set firm daily --enable --disable", "exclude each other");
    addRow("address", "set firm daily --emails a@firma.sk,b", "'b' is no mail address");
    addRow("time", "set firm daily --enable --time 7:00", "--time must be HH:MM");
    addRow("older format", "set firm monthly --format xls", "always .xlsx");
    addRow("schema", "why nobody daily", "no active schema 'nobody'");
    addRow("injection", "why x'OR''=' daily", "no active schema 'x'OR''=''");
    addRow("one schema", "status --schema nobody", "no active schema 'nobody'");
    addRow("one database", "status --single --schema firm", "no active schema 'firm'");
}

void TestToolAnswers::usage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, text);
    const Outcome outcome = run(arguments.split(' '));
    QVERIFY2(outcome.errors.contains(text), qPrintable(outcome.errors));
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QString());
    QCOMPARE(bench->schema.value("SELECT COUNT(*) FROM vars").toInt(), 0);
}

void TestToolAnswers::statusTellsReasons_data()
{
    addColumns<QString, QString>("change", "reason");
    const auto key = [](const char *name, const char *value) {
        return QString("REPLACE INTO vars VALUES ('autoReport.DailyAtten.%1', '%2')")
            .arg(name, value);
    };
    const auto timeAndLast = [](const char *time, int lastGenerated) {
        return QString("REPLACE INTO vars VALUES ('autoReport.DailyAtten.time', '%1'), "
                       "('autoReport.DailyAtten.lastGenerated', %2)")
            .arg(time)
            .arg(lastGenerated);
    };
    addRow("well", "DO 0", "");
    addRow("off", key("enabled", "0"), "");
    addRow("not found by the scan", key("enabled", "true"), "switch");
    addRow("nobody", key("emails", " , "), "recipients");
    addRow("malformed", key("emails", "a@firma.sk, b@firma"), "recipients");
    addRow("time", key("time", "7 hours"), "time");
    addRow("future", key("lastGenerated", "1900000000"), "future");
    addRow("overdue", key("lastGenerated", "1699941602"), "overdue");
    addRow("in time for a while", timeAndLast("08:30", 1699947002), "");
    addRow("none yesterday", timeAndLast("10:00", 1699866002), "overdue");
    addRow("table", "DROP TABLE brape", "tables");
    addRow("column", "ALTER TABLE atten DROP ok", "tables");
    addRow("another report's column", "ALTER TABLE people DROP pamId", "");
    addRow("settings", "DROP TABLE vars", "tables");
    addRow("queue",
           "INSERT INTO emails (`from`, `to`, subject, created) VALUES "
           "('a', 'b', 'c', UNIX_TIMESTAMP() - 3700)",
           "queue");
    addRow("queue, off",
           "INSERT INTO emails (`from`, `to`, subject, created) SELECT "
           "'a', 'b', 'c', UNIX_TIMESTAMP() - 3700 FROM (SELECT 1) x; " +
               key("enabled", "0"),
           "queue");
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
    addColumns<QString, QString, QString>("at", "verdicts", "next");
    addRow("made", "2023-11-15 09:30", "yyyn", "2023-11-16 07:00:00 CET");
    addRow("too early", "2023-11-16 06:59", "yyny", "2023-11-16 07:00:00 CET");
    addRow("due", "2023-11-16 07:00", "yyyy", "2023-11-16 07:00:00 CET");
    addRow("in the gap", "2024-03-31 02:30", "yyny", "2024-03-31 07:00:00 CEST");
}

void TestToolAnswers::whyTellsEachRule()
{
    QFETCH(QString, at);
    QFETCH(QString, verdicts);
    QFETCH(QString, next);
    setUpDailyReport();
    const Outcome outcome = run({"why", "firm", "daily", "--at", at});
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
