#include "tool/tooltest.h"

#include <QJsonDocument>

/// What the check finds in installations that lack something.
class TestToolCheck : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void checkFinds_data();
    void checkFinds();
    void checkFindsMissingRights();
    void checkOfServerAndHost();

private:
    QStringList checkFindings(const QString &subject) const;
};

/// What the check tells of that subject, each with its remedy.
QStringList TestToolCheck::checkFindings(const QString &subject) const
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

void TestToolCheck::checkFinds_data()
{
    addColumns<QString, QString>("change", "finding");
    addRow("nothing", "DO 0", "");
    addRow("settings", "DROP TABLE vars", "table vars: Table");
    addRow("column", "ALTER TABLE atten DROP ok", "table atten: Unknown column 'ok'");
    const QString on = "; INSERT INTO vars VALUES ('dattenInters', '1'), ('advancedOvertime', '1')";
    const QString ambiguous = "ALTER TABLE inters ADD del INT";
    addRow("ambiguous", ambiguous + on, "Column 'del' in");
    addRow("ambiguous, not joined", ambiguous, "");
    addRow("overtime", "ALTER TABLE atten DROP saldo_p" + on, "column 'saldo_p'");
    addRow("overtime, not read", "ALTER TABLE atten DROP saldo_p", "");
    addRow("engine", "ALTER TABLE emails ENGINE=MyISAM", "emails ENGINE=InnoDB");
    addRow("key", "ALTER TABLE vars DROP PRIMARY KEY, ADD KEY (name)", "ADD UNIQUE KEY (name)");
    addRow("letters", "ALTER TABLE emails MODIFY subject VARCHAR(255) CHARSET latin1",
           "emails.subject is in latin1");
    addRow("attachments", "ALTER TABLE emails MODIFY data BLOB", "emails.data holds 65535");
    addRow("packet",
           "INSERT INTO emails (`from`, `to`, subject, data) VALUES "
           "('a', 'b', 'c', REPEAT('x', 34 * 1024 * 1024))",
           "set max_allowed_packet");
    addRow("sender", "INSERT INTO vars VALUES ('globalEmail', '')", "globalEmail, is no");
    addRow("disabled", "UPDATE vars SET value = 0 WHERE name LIKE '%enabled'", "");
}

void TestToolCheck::checkFinds()
{
    QFETCH(QString, change);
    QFETCH(QString, finding);
    setUpDailyReport();
    bench->schema.exec(change.split("; "));
    const QStringList found = checkFindings("firm");
    QVERIFY2(finding.isEmpty() ? found.isEmpty()
                               : found.size() == 1 && found.at(0).contains(finding),
             qPrintable(found.join('\n')));
}

void TestToolCheck::checkFindsMissingRights()
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

void TestToolCheck::checkOfServerAndHost()
{
    QVERIFY(run({"check"}).output.contains("problem: server: its clock is "));
    info->exec("INSERT INTO `schemas` (token, name, user, pass) SELECT seq, '', '', '' FROM "
               "seq_1_to_6000");
    const QStringList found = checkFindings("server").filter("max_connections is 6000");
    QCOMPARE(found.size(), 1);
    QVERIFY2(found.at(0).contains("up to 6003 for 6001 schemas"), qPrintable(found.at(0)));
    qputenv("TMPDIR", "/no/such");
    const QStringList host = checkFindings("host");
    QVERIFY(host.size() == 1 && host.at(0).contains("directory '/no/such' does not exist"));
}

QTEST_GUILESS_MAIN(TestToolCheck)
#include "tst_toolcheck.moc"
