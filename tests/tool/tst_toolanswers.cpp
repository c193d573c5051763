#include "tool/tooltest.h"

#include <QFileInfo>
#include <QRegularExpression>

/// The commands that only read: their output, and wrong command lines.
class TestToolAnswers : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void usage_data()
    {
        addColumns<QString, QString>("arguments", "text");
        const auto guess = [](const char *text, const char *meant) {
            return QString("%1\nPerhaps meant: %2\nHelp: ").arg(text, meant);
        };
        addRow("command", "chekc --json", guess("unknown command 'chekc'", "check"));
        addRow("option", "status --nonsense",
               "unknown option 'nonsense'\nUsage: autoreport status ");
        addRow("near option", "status --jsno", guess("unknown option 'jsno'", "--json"));
        addRow("begun option", "why firm daily --time",
               guess("unknown option 'time'", "--timeout"));
        addRow("report", "why firm Dayly",
               guess("there is no report 'Dayly': it is daily or monthly", "daily"));
        addRow("format", "preview firm daily --out x.ods", "end with .xlsx or .xls");
        addRow("date", "preview firm daily --out x.xls --date 2023-02-29", "--date must");
        addRow("to", "run firm daily --to a@firma", "--to must be one mail address");
        addRow("nobody to ask", "run firm daily", "give --yes");
        addRow("mark", "run firm daily --yes --mark --date 2023-11-14", "--mark is for");
        addRow("schema", "run nobody daily --yes",
               "no active schema 'nobody'\nUsage: TOKEN is one of those in the table schemas\n");
        addRow("near schema", "run Fimr daily --yes", guess("no active schema 'Fimr'", "firm"));
        addRow("injection", "preview x'OR''=' daily --out x.xls", "no active schema 'x'OR''=''");
    }

    void usage()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, text);
        bench->schema.exec("DELETE FROM vars");
        const Outcome outcome = run(arguments);
        QVERIFY2(outcome.errors.contains(text), qPrintable(outcome.errors));
        QCOMPARE(outcome.errors.count('\n'), 3);
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.output, QString());
        QCOMPARE(bench->schema.value("SELECT COUNT(*) FROM vars").toInt(), 0);
    }

    void lostOutputIsAnError_data()
    {
        addColumns<QString, int>("arguments", "schemas");
        addRow("status", "status --json", 1);
        addRow("more than a buffer holds", "status --json", 30);
        addRow("history", "history", 1);
        addRow("why", "why firm daily", 1);
        addRow("check", "check", 1);
        addRow("set", "set firm daily --format xls", 1);
        addRow("help of a command", "status --help", 1);
        addRow("help", "--help", 1);
        addRow("version", "--version", 1);
    }

    void lostOutputIsAnError()
    {
        QFETCH(QString, arguments);
        QFETCH(int, schemas);
        for (int i = 1; i < schemas; ++i)
            info->addSchemas({QString::number(i)}, bench->schema.name());
        const Outcome outcome = run(arguments, "/dev/full");
        QCOMPARE(outcome.errors, QString("autoreport: cannot write to standard output: "
                                         "No space left on device\n"));
        QCOMPARE(outcome.status, 1);
    }

    void targets_data()
    {
        addColumns<QString, bool>("making", "taken");
        addRow("new", "true", true);
        addRow("file", "touch p.xls", true);
        addRow("link to a file", "touch file; ln -s file p.xls", true);
        addRow("link to nothing", "ln -s nothing p.xls", true);
        addRow("FIFO", "mkfifo p.xls", false);
        addRow("link to a FIFO", "mkfifo fifo; ln -s fifo p.xls", false);
        addRow("folder", "mkdir p.xls", false);
    }

    /// Devices and FIFOs are not replaced by what a command writes.
    void targets()
    {
        QFETCH(QString, making);
        QFETCH(bool, taken);
        for (const QString command : {"preview firm daily --out ", "history --html "}) {
            const QTemporaryDir folder;
            QCOMPARE(QProcess::execute("sh", {"-c", "cd " + folder.path() + "; " + making}), 0);
            const QString path = folder.filePath("p.xls");
            const bool wasLink = QFileInfo(path).isSymLink();
            const Outcome outcome = run(command + path);
            QCOMPARE(outcome.status, taken ? 0 : 1);
            QCOMPARE(outcome.output, taken ? path + '\n' : QString());
            QCOMPARE(outcome.errors,
                     taken ? QString()
                           : "autoreport: cannot write '" + path + "': it is not a regular file\n");
            QCOMPARE(QFileInfo(path).isFile(), taken);
            QVERIFY(taken || QFileInfo(path).isSymLink() == wasLink);
        }
    }

    void statusTellsReasons_data()
    {
        addColumns<QString, QString>("change", "reason");
        const auto key = [](const char *name, const char *value) {
            return QString("REPLACE INTO vars VALUES ('autoReport.DailyAtten.%1', '%2')")
                .arg(name, value);
        };
        addRow("well", "DO 0", "");
        addRow("off", key("enabled", "0"), "");
        addRow("not found by the scan", key("enabled", "true"), "switch");
        addRow("nobody", key("emails", " , "), "recipients");
        addRow("time", key("time", "7 hours"), "time");
        addRow("future", key("lastGenerated", "1900000000"), "future");
        addRow("overdue", key("lastGenerated", "1699941602") + ";\nALTER TABLE vars FORCE",
               "overdue");
        addRow("just switched on", key("lastGenerated", "1699941602"), "");
        addRow("in time for a while",
               key("time", "08:30") + ";\n" + key("lastGenerated", "1699947002"), "");
        addRow("table", "DROP TABLE brape", "tables");
        const QString mail = "INSERT INTO emails (`from`, `to`, subject, created) "
                             "VALUES ('a', 'b', 'c', UNIX_TIMESTAMP() - 3700)";
        addRow("queue, off", key("enabled", "0") + ";\n" + mail, "queue");
    }

    void statusTellsReasons()
    {
        QFETCH(QString, change);
        QFETCH(QString, reason);
        bench->schema.exec(change);
        const Outcome outcome = run("status --all --json");
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.status, reason.isEmpty() ? 0 : 1);
        const QJsonObject object = QJsonDocument::fromJson(outcome.output.toUtf8()).object();
        QCOMPARE(object.value("status").toInt(), outcome.status);
        const QJsonObject daily = object.value("reports").toArray().at(0).toObject();
        QCOMPARE(daily.value("reason").toString(), reason);
        QCOMPARE(daily.value("detail").isNull(), reason.isEmpty() && daily.value("state") != "due");
        QCOMPARE(daily.value("schema").toString(), QString("firm"));
    }

    void statusOfManySchemas()
    {
        info->addSchemas({QString(64, 'x')}, bench->schema.name());
        info->addSchemas({"gone"}, "no_such_database");
        const Outcome outcome = run("status --all");
        QCOMPARE(outcome.status, 1);
        const QRegularExpression expected(
            "\nfirm .*2023-11-16 07:00.*\nfirm .*\ngone .* unreachable\n(.*\n)*"
            "gone: cannot open the database 'no_such_database' on ");
        QVERIFY2(outcome.output.contains(expected), qPrintable(outcome.output));
        QVERIFY(!outcome.output.contains("secret") && !outcome.output.contains('\033'));

        info->exec("UPDATE `schemas` SET token = 'x\nfirm  daily\x1b[2J' WHERE token = 'gone'");
        const QString harmless = QString("\nx%1firm  daily%1[2J ").arg(QChar(0xFFFD));
        QVERIFY(run("status").output.contains(harmless));
        info->exec("ALTER TABLE `schemas` DROP sid"); // an empty list is no answer
        QCOMPARE(run("status").status, 2);
        QCOMPARE(run("check").status, 2);
    }

    void whyTellsEachRule()
    {
        const Outcome outcome = run(R"(why firm daily --at "2024-03-31 02:30")");
        QString found;
        for (const QString &line : outcome.output.split('\n'))
            found += line.startsWith("  met ") ? "y" : line.startsWith("  not met ") ? "n" : "";
        QCOMPARE(found, QString("yyny"));
        QCOMPARE(outcome.output.section("\nNext due: ", 1).section('\n', 0, 0),
                 QString("2024-03-31 07:00:00 CEST"));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(run("why firm monthly").status, 1); // it will never be due
    }

    void checkFinds_data()
    {
        addColumns<QString, QString>("change", "finding");
        addRow("nothing", "DO 0", "");
        addRow("column", "ALTER TABLE atten DROP ok", "table atten: Unknown column 'ok'");
        const QString on =
            ";\nINSERT INTO vars VALUES ('dattenInters', '1'), ('advancedOvertime', '1')";
        addRow("ambiguous", "ALTER TABLE inters ADD del INT" + on, "Column 'del' in");
        addRow("overtime, not read", "ALTER TABLE atten DROP saldo_p", "");
        addRow("engine", "ALTER TABLE emails ENGINE=MyISAM", "emails ENGINE=InnoDB");
        addRow("key", "ALTER TABLE vars DROP PRIMARY KEY, ADD KEY (name)", "ADD UNIQUE KEY (name)");
        addRow("letters", "ALTER TABLE emails MODIFY subject VARCHAR(255) CHARSET latin1",
               "emails.subject is in latin1");
        addRow("attachments", "ALTER TABLE emails MODIFY data BLOB", "emails.data holds 65535");
    }

    void checkFinds()
    {
        QFETCH(QString, change);
        QFETCH(QString, finding);
        bench->schema.exec(change);
        const QStringList found = checkFindings("firm");
        QCOMPARE(found.size(), finding.isEmpty() ? 0 : 1);
        QVERIFY2(found.join('\n').contains(finding), qPrintable(found.join('\n')));
    }

    void checkOfServer()
    {
        info->exec("INSERT INTO `schemas` (token, name, user, pass) SELECT seq, '', '', '' FROM "
                   "seq_1_to_6000");
        info->exec("SET GLOBAL max_connections = 300");
        const QString found = checkFindings("server").join('\n');
        info->exec("SET GLOBAL max_connections = 6000");
        QVERIFY2(found.contains("max_connections is 300; a host takes up to 403 for 6001"),
                 qPrintable(found));
        QVERIFY(found.contains("its clock is "));
    }

private:
    /// Returns the findings of `check` about that subject, each with its remedy.
    QStringList checkFindings(const QString &subject) const
    {
        const Outcome outcome = run("check --json");
        QStringList found;
        bool isProblem = false;
        const QJsonObject object = QJsonDocument::fromJson(outcome.output.toUtf8()).object();
        for (const auto &value : object.value("findings").toArray()) {
            const QJsonObject finding = value.toObject();
            isProblem |= finding.value("problem").toBool();
            if (finding.value("subject") == subject)
                found << finding.value("text").toString() + " -> " +
                             finding.value("remedy").toString();
        }
        return outcome.status == (isProblem ? 1 : 0) ? found : QStringList{"status"};
    }
};

QTEST_GUILESS_MAIN(TestToolAnswers)
#include "tst_toolanswers.moc"
