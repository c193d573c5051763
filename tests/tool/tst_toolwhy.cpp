#include "tool/tooltest.h"

/// What `why` names as the one cause, for either report.
class TestToolWhy : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheCause_data()
    {
        addColumns<bool, QString, QString>("inList", "change", "cause");
        const auto ofSchema = [](const char *name, const QString &change, const QString &cause) {
            addRow(name, false, change, cause);
        };
        const QString nothing = "Nothing keeps it back: next due 2023-11-16 07:00:00 CET";
        ofSchema("well", "DO 0", nothing);
        const QString set = "UPDATE vars SET value = '%1' WHERE name LIKE '%.%2'";
        ofSchema("off", set.arg("0", "enabled"), "Cause: it is disabled. To do: autoreport set");
        ofSchema("not exactly 1", set.arg("true", "enabled"), "Cause: enabled is 'true', but");
        ofSchema("blank", set.arg(" , ", "emails"), "Cause: nobody would get it: emails is ' , '");
        ofSchema("future", set.arg("1900000000", "lastGenerated"), "Cause: lastGenerated lies in");
        ofSchema("no host", set.arg("1699941602", "lastGenerated"),
                 "Cause: no host has made it, though it has been due since 2023-11-15 07:00:00");
        ofSchema("sender", "INSERT INTO vars VALUES ('globalEmail', '')", "Cause: the sender");
        ofSchema("nobody employed", "UPDATE people SET status = 0",
                 "Cause: no people are employed");
        ofSchema("people", "ALTER TABLE people DROP title2", "Cause: table");
        ofSchema("queue", "DROP TABLE emails", "Cause: table emails: ");
        ofSchema("values alone", "DROP TABLE atten_data", "Nothing keeps it back, but: table");
        const QString many = "INSERT INTO people (uid, pid, name, surname) "
                             "SELECT seq, seq, 'a', 'b' FROM seq_100_to_5000;\n";
        ofSchema("attachments", many + "ALTER TABLE emails MODIFY data BLOB",
                 "Cause: emails.data holds 65535 bytes, a mail has ");
        ofSchema("packets", many + "SET GLOBAL max_allowed_packet = 32768",
                 "Cause: max_allowed_packet is 32768, a mail has ");

        const QString poor = "CREATE OR REPLACE USER poor IDENTIFIED BY 'poor';\nGRANT SELECT ON "
                             "SCHEMA.* TO poor;\nUPDATE `schemas` SET user = 'poor', pass = "
                             "TO_BASE64('poor')";
        addRow("rights", true, poor, "Cause: table emails: INSERT command denied");
        addRow("inactive", true, "UPDATE `schemas` SET status = 0",
               "Cause: the schema is not active: status is 0 in the table schemas. To do: set");
        addRow("incomplete", true, "UPDATE `schemas` SET user = ''", "Cause: the name, user or");
        addRow("no database", true, "UPDATE `schemas` SET name = 'none'", "Cause: cannot open");
    }

    void namesTheCause()
    {
        QFETCH(bool, inList);
        QFETCH(QString, change);
        QFETCH(QString, cause);
        enableBoth();
        (inList ? *info : bench->schema).exec(change.replace("SCHEMA", bench->schema.name()));
        const Outcome daily = run("why firm daily");
        const Outcome monthly = run("why firm monthly");
        bench->schema.exec("SET GLOBAL max_allowed_packet = 67108864");
        for (const Outcome &outcome : {daily, monthly}) {
            const QString last = outcome.output.trimmed().section('\n', -1);
            QVERIFY2(last.startsWith(cause), qPrintable(outcome.output + outcome.errors));
            QCOMPARE(outcome.status, cause.startsWith("Nothing keeps it back: ") ? 0 : 1);
        }
    }

    void moreRowsThanXlsHas()
    {
        bench->set("exportUseXLSX", "0");
        bench->schema.exec("INSERT INTO people (uid, pid, name, surname) "
                           "SELECT seq, seq, 'a', 'b' FROM seq_100_to_4468");
        const QString cause = "Cause: 65550 rows are more than the 65535 of .xls. To do: "
                              "autoreport set ... --format xlsx.\n";
        const Outcome outcome = run("why firm daily");
        QVERIFY2(outcome.output.endsWith(cause), qPrintable(outcome.output + outcome.errors));
        QCOMPARE(outcome.status, 1);
    }

    void temporaryDirectory()
    {
        enableBoth();
        qputenv("TMPDIR", "/no/such");
        for (const char *kind : {"daily", "monthly"}) {
            const Outcome outcome = run(QString("why firm ") + kind);
            QVERIFY2(outcome.output.contains("\nCause: the temporary directory '/no/such' "),
                     qPrintable(outcome.output + outcome.errors));
            QCOMPARE(outcome.status, 1);
        }
    }

private:
    void enableBoth() const
    {
        bench->schema.exec(
            "INSERT INTO vars SELECT REPLACE(name, 'Daily', 'Monthly'), value FROM vars");
    }
};

QTEST_GUILESS_MAIN(TestToolWhy)
#include "tst_toolwhy.moc"
