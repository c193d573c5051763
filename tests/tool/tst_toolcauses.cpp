#include "tool/tooltest.h"

/// What `why` says first in its last line.
enum class Says {
    Well,      ///< nothing keeps it back
    Harm,      ///< nothing keeps it back, but
    Cause,     ///< something does, which is a problem for the others, too
    OnPurpose, ///< something does, which somebody wanted
    Later      ///< something does for now; the others find nothing wrong
};

/// What the commands have to say. In the remedy, KIND is the report.
struct Verdict {
    Says says;
    QString state;
    QString text; ///< or when it is due next, if all is well
    QString remedy;
    QStringList kinds{"daily", "monthly"};

    bool isProblem() const { return says == Says::Cause || says == Says::Harm; }
};
Q_DECLARE_METATYPE(Verdict)

/// Causes of "I got no report this morning", each made on purpose, and the answers of the three
/// commands that judge: `status` by its word, `why` by its last line, `check` by a finding. The
/// table of causes in docs/causes.md has the same rows.
class TestToolCauses : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void causes_data()
    {
        const QString set = "UPDATE vars SET value = '%1' WHERE name LIKE 'autoReport.%.%2'";
        cause("well", Says::Well, "DO 0", "well", "2023-11-16 07:00:00");
        cause("off", Says::OnPurpose, set.arg("0", "enabled"), "off", "it is disabled",
              "autoreport set firm KIND --enable");
        cause("not exactly 1", Says::Cause, set.arg("true", "enabled"), "switch",
              "enabled is 'true', but", "autoreport set firm KIND --enable");
        cause("blank recipients", Says::Cause, set.arg(" , ", "emails"), "recipients",
              "it has no valid recipient: emails is ' , '", "autoreport set firm KIND --emails");
        cause("one bad recipient", Says::Harm, set.arg("a@firma.sk,b", "emails"), "recipients",
              "not a mail address: b", "autoreport set firm KIND --emails");
        cause("time", Says::Harm, set.arg("7 hours", "time"), "time",
              "'7 hours' is not a time of day", "autoreport set firm KIND --time");
        cause("future", Says::Cause, set.arg("1900000000", "lastGenerated"), "future",
              "lastGenerated is in the future", "correct the clock");
        cause("no settings", Says::Cause, "DROP TABLE vars", "tables",
              "the settings cannot be read: ", "restore the table vars");
        cause("no people table", Says::Cause, "ALTER TABLE people DROP surname", "tables", "table",
              "update the schema to the product's version");
        cause("no queue", Says::Cause, "DROP TABLE emails", "tables",
              "no mail can be queued: table emails: ", "update the schema");
        cause("values alone", Says::Harm, "DROP TABLE atten_data", "tables",
              "table atten_data: ", "update the schema");
        cause("sender", Says::Cause, "INSERT INTO vars VALUES ('globalEmail', 'x')", "sender",
              "the sender globalEmail is not a mail address: 'x'", "correct globalEmail");
        cause("nobody employed", Says::Cause, "UPDATE people SET status = 0", "people",
              "no people are employed", "check status, begin and end");
        const QString many = "INSERT INTO people (uid, pid, name, surname) "
                             "SELECT seq, seq, 'a', 'b' FROM seq_100_to_5000;\n";
        cause("small column", Says::Cause, many + "ALTER TABLE emails MODIFY data BLOB", "size",
              "emails.data can hold 65535 bytes, but a mail has ",
              "ALTER TABLE emails MODIFY data LONGBLOB");
        cause("column for texts", Says::Harm, "ALTER TABLE emails MODIFY data BLOB", "size",
              "emails.data can hold 65535 bytes, but workbooks need",
              "ALTER TABLE emails MODIFY data LONGBLOB");
        cause("small packets", Says::Cause, many + "SET GLOBAL max_allowed_packet = 32768",
              "packet", "max_allowed_packet is 32768, but a mail has ", "set max_allowed_packet");
        cause("workbooks near the limit", Says::Harm,
              "INSERT INTO emails (`from`, `to`, subject, body, status, data) VALUES ('z', 'a', "
              "'', '', 'S', REPEAT('x', 9000000));\nSET GLOBAL max_allowed_packet = 16777216",
              "packet", "the largest of the last mails has 9000000 bytes, more than half of the ",
              "set max_allowed_packet to at least twice the mail");
        cause("no transactions", Says::Harm, "ALTER TABLE emails ENGINE=MyISAM", "storage",
              "table emails uses the engine MyISAM", "ALTER TABLE emails ENGINE=InnoDB");
        cause("two rows of a name", Says::Harm, "ALTER TABLE vars DROP PRIMARY KEY", "storage",
              "vars.name is not unique", "ALTER TABLE vars ADD UNIQUE KEY");
        cause("two rows of a setting", Says::Harm,
              "ALTER TABLE vars DROP PRIMARY KEY;\nINSERT INTO vars VALUES ('a', 1), ('a', 2)",
              "storage", "vars.name is not unique",
              "'a' has several rows: keep one row of each name, then ALTER TABLE vars ADD UNIQUE "
              "KEY");
        cause("view of the settings", Says::Well,
              "RENAME TABLE vars TO v;\nCREATE VIEW vars AS SELECT * FROM v", "well",
              "2023-11-16 07:00:00");
        cause("letters", Says::Harm,
              "ALTER TABLE emails MODIFY subject VARCHAR(255) CHARSET latin1", "letters",
              "emails.subject is in latin1", "ALTER TABLE emails CONVERT TO CHARACTER SET utf8mb4");
        cause("sender stands still", Says::Harm, oldMail, "queue", "mails have been waiting",
              "check that the product's sender works");
        const QString sent = "INSERT INTO emails (status, `from`, `to`, subject, created, sent) "
                             "VALUES ('S', 'a', 'b', 'Denný report dochádzky za 14. 11. 2023', "
                             "1699941602, 1), ('S', 'a', 'b', 'Mesačný report dochádzky za 11 / "
                             "2023', 1699941602, 1)";
        cause("all mails refused", Says::Harm, sent, "unmailed",
              "it counts as made today, but none of its mails",
              "find the reason in the host's log, then run autoreport run firm KIND");

        // A host scans once an hour.
        cause("for a while", Says::Well,
              set.arg("08:30", "time") + ";\n" + set.arg("1699947002", "lastGenerated"), "well",
              "2023-11-15 09:3");
        const QString due = set.arg("1699941602", "lastGenerated");
        cause("just switched on", Says::Later, due, "due",
              "it has been due since 2023-11-15 07:00:00 CET, but the settings were only just",
              "wait, or let the host scan at once: systemctl reload autoreport");
        cause("no host", Says::Cause,
              due + ";\nALTER TABLE vars FORCE;\nALTER TABLE INFO.`schemas` FORCE", "overdue",
              "no host has made it, though it has been due since 2023-11-15 07:00:00 CET, and no "
              "host on this machine answers",
              "check that autoreport serve is running");
        cause("moved to later", Says::Well,
              due + ";\n" + set.arg("23:00", "time") + ";\nALTER TABLE vars FORCE", "well",
              "2023-11-15 23:00:00");
        cause("written all the time", Says::Cause, set.arg("1699855202", "lastGenerated"),
              "overdue", "no host has made it", "check that autoreport serve is running");
        causesInTheList();
        causesByRights();
        causesOfTheDailyReport();
    }

    void causes()
    {
        auto [change, verdict] = fetch<QString, Verdict>();
        bench->schema.exec(change.replace("INFO", info->name()));
        hold(verdict);
        bench->schema.exec("SET GLOBAL max_allowed_packet = 67108864, read_only = 0");
    }

    /// Mails that wait are a problem even if both reports are off.
    void queueOfWhatIsOff()
    {
        bench->schema.exec("UPDATE vars SET value = '0' WHERE name LIKE '%.enabled'");
        bench->schema.exec(oldMail);
        const Outcome outcome = run("status");
        QVERIFY(outcome.output.contains("\nfirm daily: mails have been waiting for over an hour"));
        QCOMPARE(outcome.status, 1);
    }

    void machine()
    {
        environment.insert("TMPDIR", "/no/such");
        hold({Says::Cause, "directory", "the temporary directory '/no/such' does not exist",
              "create it, or point TMPDIR"});
    }

    void hostIsPaused()
    {
        startHost();
        program->send(SIGUSR1);
        QTRY_VERIFY_WITH_TIMEOUT(hostSays("paused; serves 1 schema "), patienceMs);
        hold({Says::Cause, "paused", "the host is paused", "resume it: "});
    }

    void hostHasNotScanned()
    {
        bench->schema.exec("UPDATE vars SET value = '0' WHERE name LIKE '%.enabled'");
        startHost("serves 0 schemas ");
        bench->schema.exec("UPDATE vars SET value = '1' WHERE name LIKE '%.enabled'");
        hold({Says::Later, "scan", "the host has not found the schema yet: it last scanned at 2023",
              "wait, or let the host scan at once: systemctl reload autoreport"});
    }

    /// A scan needs two connections, the commands need one.
    void hostCannotOpen()
    {
        bench->schema.exec(
            QString("CREATE OR REPLACE USER one IDENTIFIED BY 'one' WITH MAX_USER_CONNECTIONS 1;\n"
                    "GRANT ALL ON *.* TO one;\n"
                    "UPDATE %1.`schemas` SET user = 'one', pass = TO_BASE64('one')")
                .arg(info->name()));
        startHost("serves 0 schemas ");
        for (const QString &table : {bench->schema.name() + ".vars", info->name() + ".`schemas`"})
            bench->schema.exec("ALTER TABLE " + table + " FORCE"); // forgets when it was written
        const Verdict verdict{Says::Cause, "scan", "the host's last scan, at 2023-11-15 09:3",
                              "read the lines of the host's log about 'firm' or its database"};
        hold(verdict);
        bench->schema.exec("UPDATE vars SET value = '1699855202' WHERE name LIKE '%lastGenerated'");
        hold(verdict); // somebody writes all the time
    }

    void afterRuns_data()
    {
        const QString refuse = "CREATE TRIGGER refuse BEFORE INSERT ON emails FOR EACH ROW "
                               "IF NEW.`to` = '%1@firma.sk' THEN SIGNAL SQLSTATE '45000' SET "
                               "MESSAGE_TEXT = 'refused'; END IF;\n"
                               "UPDATE vars SET value = '%2' WHERE name LIKE '%.emails'";
        const QString run = "its last run, at 2023-11-15 09:3";
        const Verdict well{Says::Well, "well", "2023-11-16", {}};
        addRow("failed", refuse.arg("a", "a@firma.sk"), "refused", "DO 0",
               Verdict{Says::Cause, "failed", run, "fix that"});
        addRow("failed in part", refuse.arg("b", "a@firma.sk,b@firma.sk"), ", 1 mail in ", "DO 0",
               Verdict{Says::Harm, "failed", run, "fix that before"});
        // The failure does not matter any more, and running the report would mail it twice.
        addRow("failed, but another host has made it", "UPDATE people SET status = 0", "no people!",
               "REPLACE INTO vars SELECT REPLACE(name, 'enabled', 'lastGenerated'), 1700037000 "
               "FROM vars WHERE name LIKE '%.enabled';\nUPDATE people SET status = 1",
               well);
        addRow("made", "DO 0", ", 1 mail in ", "DO 0", well);
    }

    /// A host makes both reports after `change`, until `why` says so.
    void afterRuns()
    {
        const auto [change, said, later, verdict] = fetch<QString, QString, QString, Verdict>();
        bench->schema.exec(change);
        makeDue(bench->schema);
        startHost();
        for (const QString report : {"daily", "monthly"})
            QTRY_VERIFY_WITH_TIMEOUT(run("why firm " + report).output.contains(said), patienceMs);
        QCOMPARE(bench->mails(), said.contains(" 1 mail ") ? 2 : 0);
        bench->schema.exec(later);
        hold(verdict);
    }

    void hostCannotWrite()
    {
        environment.insert("TMPDIR", "/proc");
        startHost();
        hold({Says::Cause, "directory", "the host cannot write to its temporary directory '/proc'",
              "make it writable"});
    }

private:
    void prepare() override
    {
        ToolTest::prepare();
        enableBoth();
    }

    static void cause(const char *name, Says says, const QString &change, const QString &state,
                      const QString &text, const QString &remedy = {},
                      const QStringList &kinds = {"daily", "monthly"})
    {
        addRow(name, change, Verdict{says, state, text, remedy, kinds});
    }

    static void causesInTheList()
    {
        const auto row = [](const char *name, Says says, const QString &change, const char *state,
                            const char *text, const char *remedy) {
            cause(name, says, "UPDATE INFO.`schemas` SET " + change, state, text, remedy);
        };
        row("not active", Says::OnPurpose, "status = 0", "inactive", "the schema is not active",
            "set status to 1");
        row("incomplete", Says::Cause, "user = ''", "incomplete", "the name, user or pass of",
            "complete its row");
        row("no database", Says::Cause, "name = 'none'", "unreachable",
            "cannot open the database 'none'", "correct its row");
        row("password", Says::Cause, "pass = TO_BASE64('no')", "unreachable",
            "cannot open the database '", "correct its row");
    }

    /// An account that may read these tables, and write to those with an exclamation mark.
    static void causesByRights()
    {
        const auto grant = [](const char *name, Says says, const QString &tables, const char *text,
                              const char *remedy, const char *state = "rights",
                              const QString &more = {}) {
            QString change = "CREATE OR REPLACE USER poor IDENTIFIED BY 'poor';\n";
            for (const QString &table : tables.split(' '))
                change += QString("GRANT SELECT%1 ON `%2` TO poor;\n")
                              .arg(table.endsWith('!') ? ", INSERT, UPDATE" : "",
                                   QString(table).remove('!'));
            change += "UPDATE INFO.`schemas` SET user = 'poor', pass = TO_BASE64('poor')";
            cause(name, says, change + more, state, text, remedy);
        };
        const QString people = "people groups departs branches";
        const QString all = people + " brape atten atten_data inters atten_month";
        grant("no settings", Says::Cause, people,
              "the settings cannot be read: ", "GRANT SELECT ON `");
        grant("people", Says::Cause, "vars! emails! groups departs branches", "table",
              "GRANT SELECT ON `");
        grant("values", Says::Harm, "vars! emails! inters " + people, "table", "GRANT SELECT ON `");
        grant("queue", Says::Cause, "vars! " + all, "no mail can be queued: table emails: INSERT",
              "GRANT INSERT ON `");
        grant("mark", Says::Cause, "emails! vars " + all,
              "lastGenerated cannot be stored, and everybody is mailed again every minute: ",
              "GRANT INSERT, UPDATE ON `");
        grant("server", Says::Cause, "emails! vars! " + all, "the server is read-only (read_only",
              "use the server that accepts writes", "readonly", ";\nSET GLOBAL read_only = 1");
        cause("privileged account", Says::Well, "SET GLOBAL read_only = 1", "well", "2023-11-16");
    }

    /// Only the daily report can be an .xls, and only it joins the table of interruptions.
    static void causesOfTheDailyReport()
    {
        const QStringList daily("daily");
        const QString people = "INSERT INTO people (uid, pid, name, surname) "
                               "SELECT seq, seq, 'a', 'b' FROM seq_100_to_4468";
        cause("rows of .xls", Says::Cause,
              "REPLACE INTO vars VALUES ('exportUseXLSX', '0');\n" + people, "rows",
              "65550 rows are more than the 65535 that .xls can hold",
              "autoreport set firm daily --format xlsx", daily);
        cause("ambiguous column", Says::Harm,
              "REPLACE INTO vars VALUES ('dattenInters', '1');\nALTER TABLE inters ADD del INT",
              "tables", "tables atten_data, inters: Column 'del' in", "update the schema", daily);
    }

    void hold(const Verdict &verdict) const
    {
        const Outcome status = run("status --all --json");
        const Outcome check = run("check firm --json");
        for (const QString &kind : verdict.kinds) {
            Verdict ofKind = verdict;
            ofKind.remedy.replace("KIND", kind);
            holdStatus(status, kind, ofKind);
            holdWhy(run("why firm " + kind), ofKind);
            holdCheck(check, ofKind);
        }
    }

    static void holdStatus(const Outcome &outcome, const QString &kind, const Verdict &verdict)
    {
        const QString shown = outcome.output + outcome.errors;
        QVERIFY2(outcome.status == (verdict.isProblem() ? 1 : 0), qPrintable(shown));
        QCOMPARE(outcome.json()["status"].toInt(), outcome.status);
        int lines = 0;
        for (const auto &value : outcome.json()["reports"].toArray()) {
            const QJsonObject line = value.toObject();
            if (line.contains("report") && line["report"] != kind)
                continue;
            ++lines;
            QCOMPARE(line["schema"].toString(), QString("firm"));
            QCOMPARE(line["state"].toString(), verdict.state);
            QCOMPARE(line["reason"].isNull(), !verdict.isProblem());
            const QString detail = line["detail"].toString();
            if (verdict.isProblem() || verdict.says == Says::Later)
                QVERIFY2(detail.startsWith(verdict.text) &&
                             detail.contains("; to do: " + verdict.remedy),
                         qPrintable(shown));
            else
                QVERIFY(line["detail"].isNull());
        }
        QCOMPARE(lines, 1);
    }

    static void holdWhy(const Outcome &outcome, const Verdict &verdict)
    {
        const bool isWell = verdict.says == Says::Well;
        const QString last = outcome.output.trimmed().section('\n', -1);
        const QString begin = isWell                       ? "Nothing prevents it: next due "
                              : verdict.says == Says::Harm ? "Nothing prevents it, but: "
                                                           : "Cause: ";
        QVERIFY2(last.startsWith(begin + verdict.text) &&
                     (isWell || last.section(". To do: ", -1).startsWith(verdict.remedy)),
                 qPrintable(outcome.output + outcome.errors));
        QCOMPARE(outcome.status, isWell ? 0 : 1);
    }

    /// Only what somebody has to fix, and what is disabled, is a finding.
    static void holdCheck(const Outcome &outcome, const Verdict &verdict)
    {
        bool isFound = false;
        for (const auto &value : outcome.json()["findings"].toArray()) {
            const QJsonObject finding = value.toObject();
            if (finding["subject"] == "server") // its clock is another
                continue;
            const bool isProblem = finding["problem"].toBool();
            const bool isIt = finding["text"].toString().startsWith(verdict.text) &&
                              finding["remedy"].toString().startsWith(verdict.remedy);
            QVERIFY2(verdict.isProblem() || !isProblem, qPrintable(outcome.output));
            QVERIFY(!isIt || isProblem == verdict.isProblem());
            isFound = isFound || isIt;
        }
        QVERIFY2(isFound == (verdict.isProblem() || verdict.says == Says::OnPurpose),
                 qPrintable(verdict.text + outcome.output + outcome.errors));
    }

    void startHost(const QString &serves = "serves 1 schema ")
    {
        serve();
        QTRY_VERIFY_WITH_TIMEOUT(hostSays(serves), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(hostSays("last scan 2023"), patienceMs);
    }
    bool hostSays(const QString &text) const { return run("status").output.contains(text); }

    const QString oldMail = "INSERT INTO emails (`from`, `to`, subject, created) "
                            "VALUES ('a', 'b', 'c', UNIX_TIMESTAMP() - 3700)";
};

QTEST_GUILESS_MAIN(TestToolCauses)
#include "tst_toolcauses.moc"
