#include "tool/tooltest.h"

#include "support/hostprogram.h"

/// What `why` says first in its last line.
enum class Says {
    Well,      ///< nothing keeps it back
    Harm,      ///< nothing keeps it back, but
    Cause,     ///< something does, which is a problem for the others, too
    OnPurpose, ///< something does, which somebody wanted
    Later      ///< something does for now; the others find nothing wrong
};
Q_DECLARE_METATYPE(Says)

/**
 * Causes of "I got no report this morning", each made on purpose, and the answers of the three
 * commands that judge: `status` by its word, `why` by its last line, `check` by a finding. The
 * table of causes in docs/operations.md has the same rows.
 */
class TestToolCauses : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void schema_data()
    {
        columns();
        const QString set = "UPDATE vars SET value = '%1' WHERE name LIKE 'autoReport.%.%2'";
        cause("well", Says::Well, "DO 0", "well");
        cause("off", Says::OnPurpose, set.arg("0", "enabled"), "off", "it is disabled",
              "autoreport set firm KIND --enable");
        cause("not exactly 1", Says::Cause, set.arg("true", "enabled"), "switch",
              "enabled is 'true', but", "autoreport set firm KIND --enable");
        cause("blank recipients", Says::Cause, set.arg(" , ", "emails"), "recipients",
              "nobody would get it: emails is ' , '", "autoreport set firm KIND --emails");
        cause("one bad recipient", Says::Harm, set.arg("a@firma.sk,b", "emails"), "recipients",
              "not a mail address: b", "autoreport set firm KIND --emails");
        cause("time", Says::Harm, set.arg("7 hours", "time"), "time",
              "'7 hours' is not a time of day", "autoreport set firm KIND --time");
        cause("future", Says::Cause, set.arg("1900000000", "lastGenerated"), "future",
              "lastGenerated lies in the future", "set the clock");
        cause("no settings", Says::Cause, "DROP TABLE vars", "tables",
              "the settings cannot be read: ", "restore the table vars");
        cause("no people table", Says::Cause, "ALTER TABLE people DROP surname", "tables", "table",
              "bring the schema up to the product's version");
        cause("no queue", Says::Cause, "DROP TABLE emails", "tables",
              "no mail can be queued: table emails: ", "bring the schema up");
        cause("values alone", Says::Harm, "DROP TABLE atten_data", "tables",
              "table atten_data: ", "bring the schema up");
        cause("sender", Says::Cause, "INSERT INTO vars VALUES ('globalEmail', 'x')", "sender",
              "the sender globalEmail is not a mail address: 'x'", "correct globalEmail");
        cause("nobody employed", Says::Cause, "UPDATE people SET status = 0", "people",
              "no people are employed", "see status, begin and end");
        const QString many = "INSERT INTO people (uid, pid, name, surname) "
                             "SELECT seq, seq, 'a', 'b' FROM seq_100_to_5000;\n";
        cause("small column", Says::Cause, many + "ALTER TABLE emails MODIFY data BLOB", "size",
              "emails.data holds 65535 bytes, a mail has ",
              "ALTER TABLE emails MODIFY data LONGBLOB");
        cause("small packets", Says::Cause, many + "SET GLOBAL max_allowed_packet = 32768",
              "packet", "max_allowed_packet is 32768, a mail has ", "set max_allowed_packet");
        cause("no transactions", Says::Harm, "ALTER TABLE emails ENGINE=MyISAM", "storage",
              "table emails uses the engine MyISAM", "ALTER TABLE emails ENGINE=InnoDB");
        cause("two rows of a name", Says::Harm, "ALTER TABLE vars DROP PRIMARY KEY", "storage",
              "vars.name is not unique", "ALTER TABLE vars ADD UNIQUE KEY");
        cause("letters", Says::Harm,
              "ALTER TABLE emails MODIFY subject VARCHAR(255) CHARSET latin1", "letters",
              "emails.subject is in latin1", "ALTER TABLE emails CONVERT TO CHARACTER SET utf8mb4");
        cause("sender stands still", Says::Harm,
              "INSERT INTO emails (`from`, `to`, subject, created) VALUES ('a', 'b', 'c', "
              "UNIX_TIMESTAMP() - 3700)",
              "queue", "mails have been waiting", "see that the product's sender works");
        const QString due = set.arg("1699941602", "lastGenerated");
        cause("just switched on", Says::Later, due, "due",
              "it is due since 2023-11-15 07:00:00 CET, and the settings have been stored just",
              "wait, or let the host scan at once: systemctl reload autoreport");
        cause("no host", Says::Cause, due + ";\nALTER TABLE vars FORCE", "overdue",
              "no host has made it, though it has been due since 2023-11-15 07:00:00 CET, and no "
              "host on this machine answers",
              "see that autoreport serve runs");
    }

    void schema()
    {
        QFETCH(QString, change);
        enableBoth();
        bench->schema.exec(change);
        const Answers answers = ask();
        bench->schema.exec("SET GLOBAL max_allowed_packet = 67108864");
        holdRow(answers);
    }

    void rights_data()
    {
        columns();
        const auto lacking = [](const char *name, Says says, const QString &grants,
                                const QString &text, const QString &remedy) {
            cause(name, says, grants, "rights", text, remedy);
        };
        lacking("no settings", Says::Cause, "people groups departs branches",
                "the settings cannot be read: ", "GRANT SELECT ON `");
        lacking("people", Says::Cause, "vars! emails! groups departs branches", "table",
                "GRANT SELECT ON `");
        lacking("values", Says::Harm, "vars! emails! people groups departs branches inters",
                "table", "GRANT SELECT ON `");
        lacking("queue", Says::Cause, "vars! ALL", "no mail can be queued: table emails: INSERT",
                "GRANT INSERT ON `");
        lacking("mark", Says::Cause, "emails! vars ALL",
                "lastGenerated cannot be stored, and everybody is mailed again every minute: ",
                "GRANT INSERT, UPDATE ON `");
    }

    /// The change is a list of tables that may be read, with an exclamation mark written, too.
    void rights()
    {
        QFETCH(QString, change);
        enableBoth();
        bench->schema.exec("CREATE OR REPLACE USER poor IDENTIFIED BY 'poor'");
        QStringList tables = change.split(' ');
        if (tables.removeAll("ALL") > 0)
            tables += QString("people groups departs branches brape atten atten_data inters "
                              "atten_month")
                          .split(' ');
        for (const QString &table : qAsConst(tables))
            bench->schema.exec(QString("GRANT SELECT%1 ON `%2`.`%3` TO poor")
                                   .arg(table.endsWith('!') ? ", INSERT, UPDATE" : "",
                                        bench->schema.name(), QString(table).remove('!')));
        info->exec("UPDATE `schemas` SET user = 'poor', pass = TO_BASE64('poor')");
        holdRow(ask());
    }

    void list_data()
    {
        columns();
        cause("not active", Says::OnPurpose, "status = 0", "inactive", "the schema is not active",
              "set status to 1");
        cause("incomplete", Says::Cause, "user = ''", "incomplete", "the name, user or pass of",
              "complete its row");
        cause("no database", Says::Cause, "name = 'none'", "unreachable",
              "cannot open the database 'none'", "correct its row");
        cause("password", Says::Cause, "pass = TO_BASE64('no')", "unreachable",
              "cannot open the database '", "correct its row");
        cause("account", Says::Cause, "user = 'nobody'", "unreachable",
              "cannot open the database '", "correct its row");
    }

    void list()
    {
        QFETCH(QString, change);
        enableBoth();
        info->exec("UPDATE `schemas` SET " + change);
        holdRow(ask());
    }

    void machine()
    {
        enableBoth();
        qputenv("TMPDIR", "/no/such");
        hold(ask(), Says::Cause, "directory", "the temporary directory '/no/such' does not exist",
             "make it writable");
    }

    /// Only the daily report is ever written as .xls.
    void moreRowsThanXlsHas()
    {
        enableBoth();
        bench->set("exportUseXLSX", "0");
        bench->schema.exec("INSERT INTO people (uid, pid, name, surname) "
                           "SELECT seq, seq, 'a', 'b' FROM seq_100_to_4468");
        hold(ask({"daily"}), Says::Cause, "rows", "65550 rows are more than the 65535 of .xls",
             "autoreport set firm daily --format xlsx");
    }

    void hostIsPaused()
    {
        enableBoth();
        startHost();
        host->send(SIGUSR1);
        QTRY_VERIFY_WITH_TIMEOUT(hostSays("paused; serves 1 schema "), patienceMs);
        makeDue();
        hold(ask(), Says::Cause, "paused", "the host is paused", "resume it: ");
    }

    void hostHasNotScanned()
    {
        enableBoth();
        bench->schema.exec("UPDATE vars SET value = '0' WHERE name LIKE '%.enabled'");
        startHost("serves 0 schemas ");
        bench->schema.exec("UPDATE vars SET value = '1' WHERE name LIKE '%.enabled'");
        hold(ask(), Says::Later, "scan", "the host has not found it yet: its last scan was at 2023",
             "wait, or let the host scan at once: systemctl reload autoreport");
    }

    void hostFails()
    {
        enableBoth();
        bench->schema.exec("CREATE TRIGGER refuse BEFORE INSERT ON emails FOR EACH ROW SIGNAL "
                           "SQLSTATE '45000' SET MESSAGE_TEXT = 'refused'");
        makeDue();
        startHost();
        QTRY_VERIFY_WITH_TIMEOUT(run("why firm monthly").output.contains("refused"), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(run("why firm daily").output.contains("refused"), patienceMs);
        hold(ask(), Says::Cause, "failed", "its last run, at 2023-11-15 09:3", "mend that");
    }

    void hostCannotWrite()
    {
        enableBoth();
        startHost("serves 1 schema ", "/proc");
        hold(ask(), Says::Cause, "directory",
             "the host cannot write to its temporary directory '/proc'", "make it writable");
    }

    void hostHasMadeIt()
    {
        enableBoth();
        makeDue();
        startHost();
        QTRY_COMPARE_WITH_TIMEOUT(bench->mails(), 2, patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(run("why firm monthly").output.contains(", 1 mails in "),
                                 patienceMs);
        hold(ask(), Says::Well, "well", {}, {});
    }

private:
    static void columns()
    {
        addColumns<Says, QString, QString, QString, QString>("says", "change", "state", "text",
                                                             "remedy");
    }
    static void cause(const char *name, Says says, const QString &change, const char *state,
                      const QString &text = {}, const QString &remedy = {})
    {
        addRow(name, says, change, QString(state), text, remedy);
    }

    /// What the three commands say.
    struct Answers {
        QStringList kinds;
        Outcome status;
        QVector<Outcome> why; ///< by kind
        Outcome check;
    };
    Answers ask(const QStringList &kinds = {"daily", "monthly"}) const
    {
        Answers answers{kinds, run("status --all --json"), {}, run("check firm --json")};
        for (const QString &kind : kinds)
            answers.why.append(run("why firm " + kind));
        return answers;
    }

    static void holdRow(const Answers &answers)
    {
        QFETCH(Says, says);
        QFETCH(QString, state);
        QFETCH(QString, text);
        QFETCH(QString, remedy);
        hold(answers, says, state, text, remedy);
    }

    static void hold(const Answers &answers, Says says, const QString &state, const QString &text,
                     const QString &remedy)
    {
        for (int i = 0; i < answers.kinds.size(); ++i) {
            const QString ofKind = QString(remedy).replace("KIND", answers.kinds[i]);
            holdStatus(answers.status, answers.kinds[i], says, state, text, ofKind);
            holdWhy(answers.why[i], says, text, ofKind);
            holdCheck(answers.check, says, text, ofKind);
        }
    }

    static bool isProblem(Says says) { return says == Says::Cause || says == Says::Harm; }

    static void holdStatus(const Outcome &outcome, const QString &kind, Says says,
                           const QString &state, const QString &text, const QString &remedy)
    {
        const QString shown = outcome.output + outcome.errors;
        QVERIFY2(outcome.status == (isProblem(says) ? 1 : 0), qPrintable(shown));
        int lines = 0;
        for (const auto &value : objectOf(outcome)["reports"].toArray()) {
            const QJsonObject line = value.toObject();
            if (line.contains("report") && line["report"] != kind)
                continue;
            ++lines;
            QCOMPARE(line["state"].toString(), state);
            QCOMPARE(line["reason"].isNull(), !isProblem(says));
            const QString detail = line["detail"].toString();
            if (isProblem(says) || says == Says::Later)
                QVERIFY2(detail.startsWith(text) && detail.contains("; to do: " + remedy),
                         qPrintable(shown));
            else
                QCOMPARE(detail, QString());
        }
        QCOMPARE(lines, 1);
    }

    static void holdWhy(const Outcome &outcome, Says says, const QString &text,
                        const QString &remedy)
    {
        const QString last = outcome.output.trimmed().section('\n', -1);
        const QString begin = says == Says::Well   ? "Nothing keeps it back: next due 2023-11-16"
                              : says == Says::Harm ? "Nothing keeps it back, but: "
                                                   : "Cause: ";
        const bool isHeld =
            last.startsWith(begin + text) &&
            (says == Says::Well || last.section(". To do: ", -1).startsWith(remedy));
        QVERIFY2(isHeld, qPrintable(outcome.output + outcome.errors));
        QCOMPARE(outcome.status, says == Says::Well ? 0 : 1);
    }

    /// Only what somebody has to mend, and what is switched off, is a finding.
    static void holdCheck(const Outcome &outcome, Says says, const QString &text,
                          const QString &remedy)
    {
        bool isFound = false;
        for (const auto &value : objectOf(outcome)["findings"].toArray()) {
            const QJsonObject finding = value.toObject();
            if (finding["subject"] == "server") // its clock is another
                continue;
            const bool isIt = !text.isEmpty() && finding["text"].toString().startsWith(text) &&
                              finding["remedy"].toString().startsWith(remedy);
            isFound |= isIt;
            QVERIFY2(isProblem(says) || !finding["problem"].toBool(), qPrintable(outcome.output));
            QVERIFY(!isIt || finding["problem"].toBool() == isProblem(says));
        }
        QVERIFY2(isFound == (isProblem(says) || says == Says::OnPurpose),
                 qPrintable(text + outcome.output + outcome.errors));
    }

    static QJsonObject objectOf(const Outcome &outcome)
    {
        return QJsonDocument::fromJson(outcome.output.toUtf8()).object();
    }

    /// The monthly report has the settings of the daily one.
    void enableBoth()
    {
        host.reset();
        bench->schema.exec(
            "INSERT INTO vars SELECT REPLACE(name, 'Daily', 'Monthly'), value FROM vars");
    }
    void makeDue() const
    {
        bench->schema.exec(
            "UPDATE vars SET value = '1699941602' WHERE name LIKE '%.lastGenerated'");
    }

    void startHost(const QString &says = "serves 1 schema ", const QString &temporary = {})
    {
        host = std::make_unique<HostProgram>();
        QProcessEnvironment environment = TestServer::environment(moment);
        environment.insert("TMPDIR", temporary.isEmpty() ? bench->temporary.path() : temporary);
        host->start(QStringList{"serve"} + TestServer::options(info->name()), environment);
        QTRY_VERIFY_WITH_TIMEOUT(hostSays(says), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(hostSays("last scan 2023"), patienceMs);
    }
    bool hostSays(const QString &text) const { return run("status").output.contains(text); }

    std::unique_ptr<HostProgram> host;
};

QTEST_GUILESS_MAIN(TestToolCauses)
#include "tst_toolcauses.moc"
