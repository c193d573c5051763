#include "tool/tooltest.h"

/// What `status` says of one schema among many that are alike, which spares the server work.
class TestToolAlike : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void oneOfMany_data()
    {
        addRow("none", "DO 0", "well", "well");
        addRow("column of both", "ALTER TABLE people DROP surname", "tables", "tables");
        addRow("column of one", "ALTER TABLE atten_month DROP bonus", "well", "tables");
        addRow("name of a column", "ALTER TABLE atten RENAME COLUMN ok TO okay", "tables", "well");
        addRow("table", "DROP TABLE brape", "tables", "well");
        addRow("ambiguous column", "ALTER TABLE inters ADD del INT", "tables", "well");
        addRow("view",
               "RENAME TABLE atten_month TO m;\nCREATE VIEW atten_month AS SELECT * FROM m;\n"
               "ALTER TABLE m DROP bonus",
               "well", "tables");
        addRow("engine", "ALTER TABLE emails ENGINE=MyISAM", "storage", "storage");
        addRow("letters", "ALTER TABLE people MODIFY surname VARCHAR(9) CHARSET latin2", "letters",
               "letters");
        addRow("people", "UPDATE people SET status = 0", "people", "people");
        const QString revoked = "CREATE OR REPLACE USER poor IDENTIFIED BY 'poor';\n"
                                "GRANT SELECT, INSERT, UPDATE ON `DATABASE`.* TO poor;\n"
                                "REVOKE %1 ON `DATABASE`.* FROM poor;\n"
                                "GRANT SELECT ON `DATABASE`.vars TO poor;\n"
                                "UPDATE INFO.`schemas` SET user = 'poor', "
                                "pass = TO_BASE64('poor') WHERE name = 'DATABASE'";
        addRow("right to read", revoked.arg("SELECT"), "rights", "rights");
        addRow("right to mark", revoked.arg("UPDATE"), "rights", "rights");
    }

    /// The first and the last schema differ from the others.
    void oneOfMany()
    {
        auto [change, daily, monthly] = fetch<QString, QString, QString>();
        enableBoth();
        bench->set("dattenInters", "1");
        const TestDatabase other(TestDatabase::Tables::Schema);
        const QString copy = "INSERT INTO `%1`.%3 SELECT * FROM `%2`.%3";
        for (const QString table : {"vars", "people"})
            other.exec(copy.arg(other.name(), bench->schema.name(), table));
        QStringList alike;
        for (int i = 10; i < 60; ++i)
            alike.append(QString("g%1").arg(i));
        info->addSchemas(alike, bench->schema.name());
        info->addSchemas({"a", "z"}, other.name());
        other.exec(change.replace("DATABASE", other.name()).replace("INFO", info->name()));
        const Outcome outcome = run("status --json");
        const QJsonArray lines = outcome.json()["reports"].toArray();
        QCOMPARE(lines.size(), 2 * (alike.size() + 3));
        for (const auto &value : lines) {
            const QJsonObject line = value.toObject();
            const QString token = line["schema"].toString();
            const bool isOther = token == "a" || token == "z";
            const QString state = !isOther ? "well" : line["report"] == "daily" ? daily : monthly;
            QVERIFY2(line["state"] == state, qPrintable(token + outcome.output.left(4000)));
        }
    }
};

QTEST_GUILESS_MAIN(TestToolAlike)
#include "tst_toolalike.moc"
