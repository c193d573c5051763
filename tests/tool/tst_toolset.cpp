#include "tool/tooltest.h"

#include <QFile>

/// Settings for one schema and for many, and what they come to.
class TestToolSet : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void wrongUse_data()
    {
        addColumns<QString, QString>("arguments", "text");
        addRow("nothing", "set", "the schema and the report are missing");
        addRow("no report", "set firm other --enable", "there is no report 'other'");
        addRow("nothing to set", "set firm daily", "nothing to set");
        addRow("address", "set firm daily --emails a@firma.sk,b", "'b' is not a mail address");
        addRow("time", "set firm daily --time 7:00", "--time must be HH:MM, not '7:00'");
        addRow("format", "set firm daily --format xlxs", "not 'xlxs'\nPerhaps meant: xlsx\n");
        addRow("format of the other", "set firm monthly --format xls", "is always .xlsx");
        addRow("both", "set firm daily --enable --disable", "exclude each other");
        addRow("all and one", "set --all firm daily --enable", "--all and the schema 'firm'");
        addRow("nobody to ask", "set --all daily --enable", "give --yes, or --dry-run");
        addRow("second schema", "set firm frm daily --disable", "'frm'\nPerhaps meant: firm\n");
        addRow("no file", "set --file /no/such", "cannot read '/no/such': No such file");
        addRow("empty file", "set --file /dev/null", "'/dev/null' has no lines");
        addRow("file and schema", "set --file LINES firm", "'firm' belongs into the file");
        addRow("file and option", "set --file LINES --disable", "'--disable' belongs into");
        addRow("line", "set --file LINES",
               "line 3 of 'LINES': unknown option 'tiem'\nPerhaps meant: --time\n");
    }

    /// Whatever is wrong, nothing is stored, not even what comes before it.
    void wrongUse()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, text);
        const QString path = writeLines("firm daily --disable\n\nfirm daily --tiem 08:00\n");
        const Outcome outcome = run(arguments.replace("LINES", path));
        QVERIFY2(outcome.errors.contains(text.replace("LINES", path)), qPrintable(outcome.errors));
        QCOMPARE(outcome.errors.count('\n'), 3);
        QCOMPARE(outcome.status, 2);
        QCOMPARE(stored("enabled") + stored("time"), QString("107:00"));
    }

    void warns_data()
    {
        addColumns<QString, QString, int, QString>("change", "options", "status", "warnings");
        const QString none = "DO 0";
        const QString made =
            "UPDATE vars SET value = '1699941602' WHERE name LIKE '%lastGenerated'";
        const QString off = "UPDATE vars SET value = '0' WHERE name LIKE '%enabled'";
        const QString scan = "autoreport: a host finds the schema with its next scan, within an "
                             "hour; at once: systemctl reload autoreport, or SIGHUP to autoreport "
                             "serve\n";
        const QString now = "autoreport: firm daily: its time has passed, so "
                            "it goes out now: with the next tick of a host\n";
        addRow("nothing", none, "--time 06:30", 0, "");
        addRow("later today", made, "--time 23:00", 0, "");
        addRow("made before the new time", none, "--time 09:15", 0, now);
        addRow("time has passed", made, "--time 08:00", 0, now);
        addRow("off, time has passed", made, "--disable --time 08:00", 0, "");
        addRow("nobody", made, "--emails=", 1,
               "autoreport: firm daily: nobody would get it: give --emails\n");
        addRow("off, nobody", off, "--emails=", 0, "");
        addRow("on", off, "--enable", 0, scan);
        addRow("on and due", off + ";\n" + made, "--enable", 0, now + scan);
        addRow("on beside the other",
               off + ";\nINSERT INTO vars VALUES ('autoReport.MonthlyAtten.enabled', '1')",
               "--enable", 0, "");
    }

    /// With or without "--dry-run"; the latter stores nothing.
    void warns()
    {
        QFETCH(QString, change);
        QFETCH(QString, options);
        bench->schema.exec(change);
        const QString before = allSettings();
        const Outcome dry = run("set firm daily --dry-run " + options);
        QCOMPARE(allSettings(), before);
        const Outcome outcome = run("set firm daily " + options);
        QVERIFY(allSettings() != before);
        QTEST(outcome.errors, "warnings");
        QTEST(outcome.status, "status");
        QCOMPARE(dry.errors, outcome.errors);
        QCOMPARE(dry.output, outcome.output + "not set: a dry run, nothing was stored\n");
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
        QVERIFY(outcome.errors.contains("a host finds 1 of the schemas with its next scan"));
        QCOMPARE(outcome.status, 0);

        const QString lines = "# comment\nfirm monthly --disable\n"
                              "second daily --enable --emails \"b@firma.sk, c@firma.sk\"\n";
        outcome = run("set --file " + writeLines(lines));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(bench->schema.value(enabled).toString(), QString("1,0"));
        QCOMPARE(second.value("SELECT value FROM vars WHERE name LIKE '%Daily%emails'").toString(),
                 QString("b@firma.sk,c@firma.sk"));

        // One that cannot be set keeps nobody else from it.
        info->addSchemas({"broken"}, broken.name());
        outcome = run("set --all daily --disable --yes");
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.output.endsWith("\n2 of 3 set\n"));
        QVERIFY2(outcome.errors.contains("autoreport: broken: "), qPrintable(outcome.errors));
        QCOMPARE(bench->schema.value(enabled).toString(), QString("0,0"));
        QCOMPARE(second.value(enabled).toString(), QString("0,1"));
    }

private:
    QString writeLines(const QString &lines) const
    {
        QFile file(bench->temporary.filePath("lines"));
        return file.open(QIODevice::WriteOnly) && file.write(lines.toUtf8()) > 0 ? file.fileName()
                                                                                 : QString();
    }
    QString stored(const char *key) const
    {
        return bench->schema
            .value(
                QString("SELECT value FROM vars WHERE name = 'autoReport.DailyAtten.%1'").arg(key))
            .toString();
    }
    QString allSettings() const
    {
        return bench->schema.value("SELECT GROUP_CONCAT(name, '=', value ORDER BY name) FROM vars")
            .toString();
    }
};

QTEST_GUILESS_MAIN(TestToolSet)
#include "tst_toolset.moc"
