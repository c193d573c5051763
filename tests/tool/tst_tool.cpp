#include "reports/reportlock.h"

#include "support/reportbench.h"
#include "support/workbookreader.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QTest>

#include <memory>

namespace
{

struct Outcome {
    int status = -1;
    QString output;
    QString errors;
};

} // namespace

/// The operator's commands as processes, at a faked moment: judged by output and exit status.
class TestTool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ReportBench::setTimeZone(); }
    void init();
    void cleanup();
    void usage_data();
    void usage();
    void statusTellsReasons_data();
    void statusTellsReasons();
    void statusOfManySchemas();
    void whyTellsEachRule_data();
    void whyTellsEachRule();
    void previewWritesOneFileOnly_data();
    void previewWritesOneFileOnly();
    void runQueues_data();
    void runQueues();
    void runLeavesAReportInTheMakingAlone();
    void setRefuses_data();
    void setRefuses();
    void operatorAtWork();
    void checkFinds_data();
    void checkFinds();
    void checkFindsMissingRights();
    void checkOfServerAndHost();

private:
    Outcome run(const QStringList &arguments, bool faked = true) const;
    QStringList checkFindings(const QString &subject) const;
    void addSchema(const QString &token, const QString &database) const;
    void setUpDailyReport() const;

    std::unique_ptr<ReportBench> bench;
    std::unique_ptr<TestDatabase> info;
    QString moment;
};

void TestTool::init()
{
    bench = std::make_unique<ReportBench>();
    info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
    addSchema("firm", bench->schema.name());
    moment = "2023-11-15 09:30:00";
}

void TestTool::cleanup()
{
    info.reset();
    bench.reset();
}

void TestTool::addSchema(const QString &token, const QString &database) const
{
    info->exec(QString("INSERT INTO `schemas` (token, name, user, pass) VALUES ('%1', '%2', "
                       "'autoreport', 'c2VjcmV0')")
                   .arg(token, database));
}

/// As it is on a good day: made this morning.
void TestTool::setUpDailyReport() const
{
    bench->set("autoReport.DailyAtten.enabled", "1");
    bench->set("autoReport.DailyAtten.emails", "a@firma.sk");
    bench->set("autoReport.DailyAtten.time", "07:00");
    bench->set("autoReport.DailyAtten.lastGenerated", "1700028002");
    bench->schema.exec("INSERT INTO people (pid, surname, name) VALUES (7, 'Novák', 'Ján')");
}

Outcome TestTool::run(const QStringList &arguments, bool faked) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("AUTOREPORT_DB_PASSWORD", TestServer::password());
    if (faked)
        environment.insert("LD_PRELOAD", AUTOREPORT_FAKETIME);
    environment.insert("FAKETIME", "@" + moment);
    environment.insert("FAKETIME_DONT_FAKE_MONOTONIC", "1");
    environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
    QProcess tool;
    tool.setProcessEnvironment(environment);
    tool.start(AUTOREPORT_PROGRAM,
               arguments + QStringList{"--db-host", TestServer::host(), "--db-port",
                                       QString::number(TestServer::port()), "--db-user",
                                       TestServer::user(), "--db-name", info->name()});
    const bool ended = tool.waitForFinished(60000) && tool.exitStatus() == QProcess::NormalExit;
    return {ended ? tool.exitCode() : -1, QString::fromUtf8(tool.readAllStandardOutput()),
            QString::fromUtf8(tool.readAllStandardError())};
}

/// What the check tells of that subject, each with its remedy.
QStringList TestTool::checkFindings(const QString &subject) const
{
    const Outcome outcome = run({"check", "--json"}, subject != "server");
    QStringList found;
    bool isProblem = false;
    const QJsonObject object = QJsonDocument::fromJson(outcome.output.toUtf8()).object();
    for (const auto &value : object.value("findings").toArray()) {
        const QJsonObject finding = value.toObject();
        isProblem |= finding.value("problem").toBool();
        if (finding.value("subject") == subject)
            found << finding.value("text").toString() + " -> " + finding.value("remedy").toString();
    }
    return outcome.status == (isProblem ? 1 : 0) ? found : QStringList{"status"};
}

void TestTool::usage_data()
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

void TestTool::usage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, text);
    const Outcome outcome = run(arguments.split(' '));
    QVERIFY2(outcome.errors.contains(text), qPrintable(outcome.errors));
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QString());
}

void TestTool::statusTellsReasons_data()
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
    QTest::newRow("column") << "ALTER TABLE atten DROP saldo_p"
                            << "tables";
    QTest::newRow("another report's column") << "ALTER TABLE people DROP pamId"
                                             << "";
    QTest::newRow("settings") << "DROP TABLE vars"
                              << "tables";
    QTest::newRow("queue") << "INSERT INTO emails (`from`, `to`, subject, created) VALUES "
                              "('a', 'b', 'c', UNIX_TIMESTAMP() - 3700)"
                           << "queue";
}

void TestTool::statusTellsReasons()
{
    QFETCH(QString, change);
    QFETCH(QString, reason);
    setUpDailyReport();
    bench->schema.exec(change);
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

void TestTool::statusOfManySchemas()
{
    setUpDailyReport();
    addSchema(QString(64, 'x'), bench->schema.name());
    addSchema("gone", "no_such_database");
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
}

void TestTool::whyTellsEachRule_data()
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

void TestTool::whyTellsEachRule()
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

void TestTool::previewWritesOneFileOnly_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("change");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("error");
    const QString none = "DO 0";
    QTest::newRow("daily") << "daily"
                           << "p.xlsx" << none << 0 << "";
    QTest::newRow("monthly") << "monthly"
                             << "p.xlsx" << none << 0 << "";
    QTest::newRow("the older format") << "daily"
                                      << "p.xls" << none << 0 << "";
    QTest::newRow("monthly, older") << "monthly"
                                    << "p.XLS" << none << 0 << "";
    QTest::newRow("no directory") << "daily"
                                  << "none/p.xlsx" << none << 1 << "can not write into";
    QTest::newRow("no people") << "daily"
                               << "p.xlsx"
                               << "DELETE FROM people" << 1 << "no people!";
    QTest::newRow("no table") << "monthly"
                              << "p.xlsx"
                              << "DROP TABLE people" << 1 << ".people'";
    QTest::newRow("a value lost") << "daily"
                                  << "p.xlsx"
                                  << "DROP TABLE brape" << 1 << ".brape'";
}

void TestTool::previewWritesOneFileOnly()
{
    QFETCH(QString, report);
    QFETCH(QString, file);
    QFETCH(QString, change);
    QFETCH(int, status);
    QFETCH(QString, error);
    setUpDailyReport();
    bench->schema.exec(change);
    const QString path = bench->temporary.filePath(file);
    const Outcome outcome = run({"preview", "firm", report, "--out", path});
    QCOMPARE(outcome.status, status);
    QVERIFY2(outcome.errors.contains(error), qPrintable(outcome.errors));
    QCOMPARE(outcome.errors.isEmpty(), error.isEmpty());
    const bool made = outcome.output == path + '\n';
    QCOMPARE(QDir(bench->temporary.path()).entryList(QDir::Files).size(), made ? 1 : 0);
    if (made)
        QCOMPARE(rowCount(readSheet(path)), report == "daily" ? 16 : 2);
    QCOMPARE(made, status == 0 || error == ".brape'");
    QCOMPARE(bench->mails(), 0);
    QCOMPARE(bench->lastGenerated("DailyAtten").toString(), QString("1700028002"));
}

void TestTool::runQueues_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("change");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("mails");
    QTest::addColumn<bool>("marked");
    const QString none = "DO 0";
    const QString two =
        "UPDATE vars SET value = ' a@firma.sk, ,b@firma.sk' WHERE name LIKE '%emails'";
    const QString text = "Denný report dochádzky za ";
    QTest::newRow("one address") << "--to x@firma.sk" << two << 0
                                 << "x@firma.sk: " + text + "15. 11. 2023" << false;
    QTest::newRow("all") << "--yes" << two << 0
                         << "a@firma.sk: " + text + "15. 11. 2023|b@firma.sk: " + text +
                                "15. 11. 2023"
                         << false;
    QTest::newRow("a past day") << "--yes --date 2023-09-30" << none << 0
                                << "a@firma.sk: " + text + "30. 9. 2023" << false;
    QTest::newRow("marked") << "--to x@firma.sk --mark" << none << 0
                            << "x@firma.sk: " + text + "15. 11. 2023" << true;
    QTest::newRow("nobody") << "--yes"
                            << "DELETE FROM vars" << 1 << "" << false;
    QTest::newRow("no people") << "--yes --mark"
                               << "DELETE FROM people" << 1 << "" << false;
    QTest::newRow("no queue") << "--yes --mark"
                              << "DROP TABLE emails" << 1 << "" << false;
}

void TestTool::runQueues()
{
    QFETCH(QString, options);
    QFETCH(QString, change);
    QFETCH(int, status);
    setUpDailyReport();
    bench->schema.exec(change);
    const Outcome outcome = run(QStringList{"run", "firm", "daily"} + options.split(' '));
    QVERIFY2(outcome.status == status, qPrintable(outcome.output + outcome.errors));
    QCOMPARE(outcome.errors.isEmpty(), status == 0);
    QStringList mails;
    if (!change.startsWith("DROP"))
        for (const auto &row : bench->schema.rows("SELECT `to`, subject FROM emails"))
            mails.append(row.at(0).toString() + ": " + row.at(1).toString());
    QTEST(mails.join('|'), "mails");
    const qint64 now = QDateTime::fromString(moment, "yyyy-MM-dd HH:mm:ss").toSecsSinceEpoch();
    QTEST(bench->lastGenerated("DailyAtten").toLongLong() >= now, "marked");
    QVERIFY(QDir(bench->temporary.path()).isEmpty());
}

void TestTool::runLeavesAReportInTheMakingAlone()
{
    setUpDailyReport();
    const ReportLock host(bench->database, "DailyAttenReport");
    QVERIFY(host.mayRun());
    const Outcome outcome = run({"run", "firm", "daily", "--yes"});
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.errors.contains("a host is making this report right now"));
    QCOMPARE(bench->mails(), 0);
    QCOMPARE(run({"run", "firm", "monthly", "--to", "a@firma.sk"}).status, 0);
}

void TestTool::setRefuses_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "daily" << 2 << "nothing to set";
    QTest::newRow("both") << "daily --enable --disable" << 2 << "exclude each other";
    QTest::newRow("address") << "daily --emails a@firma.sk,b" << 2 << "'b' is no mail address";
    QTest::newRow("time") << "daily --enable --time 7:00" << 2 << "--time must be HH:MM";
    QTest::newRow("format") << "daily --format ods" << 2 << "xlsx or xls, not 'ods'";
    QTest::newRow("monthly format") << "monthly --format xls" << 2 << "always .xlsx";
    QTest::newRow("too long") << "daily --enable --emails " + QString("a@firma.sk,").repeated(30)
                              << 1 << "nothing was set";
}

void TestTool::setRefuses()
{
    QFETCH(QString, arguments);
    QFETCH(QString, text);
    bench->schema.exec("ALTER TABLE vars MODIFY value VARCHAR(300)");
    const Outcome outcome = run(QStringList{"set", "firm"} + arguments.split(' '));
    QTEST(outcome.status, "status");
    QVERIFY2(outcome.errors.contains(text), qPrintable(outcome.errors));
    QCOMPARE(bench->schema.value("SELECT COUNT(*) FROM vars").toInt(), 0);
}

/// A new customer, from the empty settings to the first mail, beside one whose tables are broken.
void TestTool::operatorAtWork()
{
    bench->schema.exec("INSERT INTO people (pid, surname, name) VALUES (7, 'Novák', 'Ján')");
    bench->set("autoReport.DailyAtten.enabled", "yes");
    QCOMPARE(run({"status"}).status, 1);
    const Outcome set = run({"set", "firm", "daily", "--enable", "--emails",
                             "a@firma.sk,b@firma.sk", "--time", "08:00", "--format", "xls"});
    QCOMPARE(set.output,
             QString("autoReport.DailyAtten.emails: not set -> 'a@firma.sk,b@firma.sk'\n"
                     "autoReport.DailyAtten.enabled: 'yes' -> '1'\n"
                     "autoReport.DailyAtten.time: not set -> '08:00'\n"
                     "exportUseXLSX: not set -> '0'\n"));
    QCOMPARE(set.status, 0);
    QVERIFY(
        run({"why", "firm", "daily"}).output.contains("Due: the next tick of a host makes it."));
    QVERIFY(run({"status"}).output.contains("overdue"));

    const QString file = bench->temporary.filePath("p.xls");
    QCOMPARE(run({"preview", "firm", "daily", "--out", file}).status, 0);
    QVERIFY(cellValue(readSheet(file), "B2").toString().startsWith("Novák Ján"));
    QCOMPARE(run({"run", "firm", "daily", "--to", "a@firma.sk", "--mark"}).status, 0);
    QCOMPARE(bench->mails(), 1);
    QVERIFY(bench->schema.value("SELECT data FROM emails").toString().contains(".xls\""));
    QCOMPARE(run({"status"}).status, 0);

    const TestDatabase broken(TestDatabase::Tables::Schema);
    addSchema("broken", broken.name());
    QCOMPARE(run({"set", "broken", "daily", "--enable", "--emails", "c@firma.sk"}).status, 0);
    broken.exec("DROP TABLE people");
    const Outcome status = run({"status"});
    QCOMPARE(status.status, 1);
    const QStringList lines = status.output.split('\n');
    QVERIFY2(lines.at(1).startsWith("broken  daily ") && lines.at(1).endsWith(" tables") &&
                 lines.at(3).startsWith("firm    daily ") && lines.at(3).endsWith(" well"),
             qPrintable(status.output));
    QVERIFY(status.output.contains("broken daily: table people: Table '"));
}

void TestTool::checkFinds_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("finding");
    QTest::newRow("nothing") << "DO 0"
                             << "";
    QTest::newRow("settings") << "DROP TABLE vars"
                              << "table vars: Table";
    QTest::newRow("column") << "ALTER TABLE atten DROP ok"
                            << "table atten: Unknown column 'ok'";
    QTest::newRow("ambiguous") << "ALTER TABLE inters ADD del INT"
                               << "Column 'del' in";
    QTest::newRow("engine") << "ALTER TABLE emails ENGINE=MyISAM"
                            << "emails ENGINE=InnoDB";
    QTest::newRow("key") << "ALTER TABLE vars DROP PRIMARY KEY, ADD KEY (name)"
                         << "ADD UNIQUE KEY (name)";
    QTest::newRow("letters") << "ALTER TABLE emails MODIFY subject VARCHAR(255) CHARSET latin1"
                             << "emails.subject is in latin1";
    QTest::newRow("attachments") << "ALTER TABLE emails MODIFY data BLOB"
                                 << "emails.data holds 65535";
    QTest::newRow("packet") << "INSERT INTO emails (`from`, `to`, subject, data) VALUES "
                               "('a', 'b', 'c', REPEAT('x', 34 * 1024 * 1024))"
                            << "set max_allowed_packet";
    QTest::newRow("sender") << "INSERT INTO vars VALUES ('globalEmail', '')"
                            << "globalEmail, is no";
    QTest::newRow("disabled") << "UPDATE vars SET value = 0 WHERE name LIKE '%enabled'"
                              << "";
}

void TestTool::checkFinds()
{
    QFETCH(QString, change);
    QFETCH(QString, finding);
    setUpDailyReport();
    bench->schema.exec(change);
    const QStringList found = checkFindings("firm");
    QVERIFY2(finding.isEmpty() ? found.isEmpty()
                               : found.size() == 1 && found.at(0).contains(finding),
             qPrintable(found.join('\n')));
}

void TestTool::checkFindsMissingRights()
{
    setUpDailyReport();
    const QString name = bench->schema.name();
    const QString user = name + "@'127.0.0.1'";
    bench->schema.exec({QString("CREATE USER %1 IDENTIFIED BY 'secret'").arg(user),
                        QString("GRANT SELECT ON %1.* TO %2").arg(name, user),
                        QString("GRANT INSERT, UPDATE ON %1.vars TO %2").arg(name, user)});
    info->exec(QString("UPDATE `schemas` SET user = '%1'").arg(name));
    const QStringList found = checkFindings("firm");
    bench->schema.exec("DROP USER " + user);
    QVERIFY2(found.size() == 1 && found.at(0).startsWith("INSERT command denied"),
             qPrintable(found.join('\n')));
    QVERIFY(found.at(0).contains("-> grant INSERT and UPDATE on vars, INSERT on emails"));
    QVERIFY(checkFindings("firm").at(0).contains("Access denied"));
}

void TestTool::checkOfServerAndHost()
{
    QVERIFY(run({"check"}).output.contains("problem: server: its clock is "));
    info->exec("INSERT INTO `schemas` (token, name, user, pass) SELECT seq, '', '', '' FROM "
               "seq_1_to_6000");
    const QStringList found = checkFindings("server").filter("max_connections is 6000");
    QCOMPARE(found.size(), 1);
    QVERIFY2(found.at(0).contains("up to 6003 for 6001 schemas"), qPrintable(found.at(0)));
    qputenv("TMPDIR", "/no/such");
    const QStringList host = checkFindings("host");
    QVERIFY(!host.isEmpty() && host.at(0).contains("point TMPDIR elsewhere"));
}

QTEST_GUILESS_MAIN(TestTool)
#include "tst_tool.moc"
