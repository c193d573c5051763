#include "tool/tooltest.h"

/// Settings for one schema and for many, and what they come to.
class TestToolSet : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void warns_data()
    {
        const QString none = "DO 0";
        const char *made = "UPDATE vars SET value = '1699941602' WHERE name LIKE '%lastGenerated'";
        const QString off = "UPDATE vars SET value = '0' WHERE name LIKE '%enabled'";
        const QString scan =
            "autoreport: a host finds the schema at its next scan, within an hour; to scan now: "
            "systemctl reload autoreport, or SIGHUP to autoreport serve\n";
        const QString now = "autoreport: firm daily: its time has passed, so "
                            "it goes out at the next tick of a host\n";
        addRow("nothing", none, "--time 06:30", 0, "");
        addRow("later today", made, "--time 23:00", 0, "");
        addRow("made before the new time", none, "--time 09:15", 0, now);
        addRow("time has passed", made, "--time 08:00", 0, now);
        addRow("off, time has passed", made, "--disable --time 08:00", 0, "");
        addRow("nobody", made, "--emails=", 1,
               "autoreport: firm daily: it has no valid recipient: use --emails\n");
        addRow("off, nobody", off, "--emails=", 0, "");
        addRow("on", off, "--enable", 0, scan);
        addRow("on and due", off + ";\n" + made, "--enable", 0, now + scan);
        addRow("on beside the other",
               off + ";\nINSERT INTO vars VALUES ('autoReport.MonthlyAtten.enabled', '1')",
               "--enable", 0, "");
    }

    /// "--dry-run" prints the same and stores nothing.
    void warns()
    {
        const auto [change, options, status, warnings] = fetch<QString, QString, int, QString>();
        bench->schema.exec(change);
        const auto stored = [this] {
            return bench->schema.rows("CHECKSUM TABLE vars");
        };
        const auto before = stored();
        const Outcome dry = run("set firm daily --dry-run " + options);
        QCOMPARE(stored(), before);
        const Outcome outcome = run("set firm daily " + options);
        QVERIFY(stored() != before);
        QCOMPARE(outcome.errors, warnings);
        QCOMPARE(outcome.status, status);
        QCOMPARE(dry.errors, outcome.errors);
        QCOMPARE(dry.output, outcome.output + "not set: a dry run, nothing was stored\n");
    }

    /// From the empty settings to the first mail.
    void newCustomer()
    {
        bench->schema.exec("DELETE FROM vars");
        bench->set("autoReport.DailyAtten.enabled", "yes");
        const Outcome set =
            run("set firm daily --enable --emails a@firma.sk,b@firma.sk --time 08:00 --format xls");
        QCOMPARE(set.output,
                 QString("autoReport.DailyAtten.emails: not set -> 'a@firma.sk,b@firma.sk'\n"
                         "autoReport.DailyAtten.enabled: 'yes' -> '1'\n"
                         "autoReport.DailyAtten.time: not set -> '08:00'\n"
                         "exportUseXLSX: not set -> '0'\n"));
        QVERIFY(run("why firm daily").output.contains("Due: the next tick of a host makes it."));
        QCOMPARE(run("run firm daily --yes --mark").status, 0);
        QVERIFY(bench->schema.value("SELECT data FROM emails").toString().contains(".xls\""));
        QCOMPARE(run("status").status, 0);
    }

    void failsInPart_data()
    {
        addRow("transactions", "InnoDB", "nothing was set in the database '%1'");
        addRow("none", "MyISAM",
               "only a part was set in the database '%1': autoReport.DailyAtten.emails = 'x@y.sk'");
    }

    void failsInPart()
    {
        const auto [engine, left] = fetch<QString, QString>();
        bench->schema.exec("ALTER TABLE vars ENGINE=" + engine);
        bench->schema.exec("CREATE TRIGGER refuse BEFORE UPDATE ON vars FOR EACH ROW IF "
                           "NEW.name LIKE '%time' THEN SIGNAL SQLSTATE '45000'; END IF");
        const Outcome outcome = run("set firm daily --emails x@y.sk --time 08:00");
        const QString end = left.arg(bench->schema.name()) + "; see autoreport check\n";
        QVERIFY2(outcome.errors.endsWith(end), qPrintable(outcome.errors));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(bench->schema.value("SELECT COUNT(*) FROM vars WHERE value = 'x@y.sk'").toInt(),
                 engine == "MyISAM" ? 1 : 0);
    }

    void manySchemas()
    {
        const TestDatabase second(TestDatabase::Tables::Schema);
        const TestDatabase broken(TestDatabase::Tables::Schema);
        broken.exec("DROP TABLE vars");
        info->addSchemas({"second"}, second.name());
        const QString enabled = "SELECT GROUP_CONCAT(value ORDER BY name) FROM vars "
                                "WHERE name LIKE '%enabled'";

        Outcome outcome = run("set firm second firm monthly --enable --emails a@firma.sk");
        QCOMPARE(outcome.output,
                 QString("firm: autoReport.MonthlyAtten.emails: not set -> 'a@firma.sk'\n"
                         "firm: autoReport.MonthlyAtten.enabled: not set -> '1'\n"
                         "second: autoReport.MonthlyAtten.emails: not set -> 'a@firma.sk'\n"
                         "second: autoReport.MonthlyAtten.enabled: not set -> '1'\n"
                         "2 of 2 set\n"));
        QVERIFY2(outcome.errors.contains("second monthly: its time has passed"),
                 qPrintable(outcome.errors));
        QVERIFY(outcome.errors.contains("a host finds 1 of the schemas at its next scan"));
        QCOMPARE(outcome.status, 0);

        const QByteArray lines = "# comment\nfirm monthly --disable\n"
                                 "second daily --enable --emails \"b@firma.sk, c@firma.sk\"\n";
        const QString path = bench->temporary.filePath("lines");
        writeFile(path, lines);
        QCOMPARE(runInShell("cat '" + path + "' | \"$@\"", {"set", "--file", "/dev/stdin"}), 0);
        QCOMPARE(bench->schema.value(enabled).toString(), QString("1,0"));
        QCOMPARE(second.value("SELECT value FROM vars WHERE name LIKE '%Daily%emails'").toString(),
                 QString("b@firma.sk,c@firma.sk"));

        // A schema that cannot be set does not keep the others from being set.
        info->addSchemas({"broken"}, broken.name());
        outcome = run("set --all daily --disable --yes");
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.output.endsWith("\n2 of 3 set\n"));
        QVERIFY2(outcome.errors.contains("autoreport: broken: "), qPrintable(outcome.errors));
        QCOMPARE(bench->schema.value(enabled).toString(), QString("0,0"));
        QCOMPARE(second.value(enabled).toString(), QString("0,1"));
    }
};

QTEST_GUILESS_MAIN(TestToolSet)
#include "tst_toolset.moc"
