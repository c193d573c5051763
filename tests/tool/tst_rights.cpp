#include "db/schemaregistry.h"
#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "support/hostprogram.h"
#include "tool/reportjob.h"
#include "tool/tooltest.h"

#include <QRegularExpression>

/// The rights that docs/operations.md grants to the account, exactly these.
class TestRights : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void aHostServesWithThem()
    {
        grant();
        HostProgram host;
        host.start({"serve", "--db-user", "least", "--db-host", TestServer::host, "--db-port",
                    QString::number(TestServer::port()), "--db-name", info->name()});
        QTRY_COMPARE_WITH_TIMEOUT(bench->mails(), 2, patienceMs);
        host.send(SIGTERM);
        QVERIFY(host.ended());
        const QRegularExpression complaint(" (WARNING|CRITICAL) ");
        QVERIFY2(!host.log.contains(complaint), qPrintable(host.log));
        QVERIFY(bench->lastGenerated("DailyAtten").toInt() > 0);
        QVERIFY(bench->lastGenerated("MonthlyAtten").toInt() > 0);
    }

    /// With all of them no report complains, without any one of them one does.
    void noneCanBeLeftOut()
    {
        grant();
        {
            QSqlDatabase least = TestServer::addConnection(connectionName, bench->schema.name());
            least.setUserName("least");
            QVERIFY(least.open());
            QCOMPARE(complaintsOfBoth(least).join('\n'), QString());
            QCOMPARE(bench->mails(), 2);
            int left = 0;
            for (const auto &[right, table] : grantedOn(bench->schema.name())) {
                const QString of = QString(" %1 ON %2 ").arg(right, table);
                bench->schema.exec("REVOKE" + of + "FROM least");
                const QStringList complaints = complaintsOfBoth(least);
                bench->schema.exec("GRANT" + of + "TO least");
                QVERIFY2(!complaints.isEmpty(), qPrintable(of));
                ++left;
            }
            QCOMPARE(left, 13);
        }
        QSqlDatabase::removeDatabase(connectionName);
    }

    void theListOfSchemasIsReadable()
    {
        grant();
        {
            QSqlDatabase least = TestServer::addConnection(connectionName, info->name());
            least.setUserName("least");
            QVERIFY(least.open());
            QCOMPARE(SchemaRegistry(least).allTokens().value().join(','), QString("kovo"));
            QCOMPARE(grantedOn(info->name()).size(), 1);
            info->exec("REVOKE SELECT ON `schemas` FROM least");
            QVERIFY(!SchemaRegistry(least).allTokens().isOk());
        }
        QSqlDatabase::removeDatabase(connectionName);
    }

    void operatorsReadTheQueue()
    {
        grant();
        bench->set("autoReport.DailyAtten.lastGenerated", "1700028002");
        bench->set("autoReport.MonthlyAtten.lastGenerated", "1700028002");
        const auto denied = [this] {
            QStringList commands;
            for (const QString command : {"status", "history", "check"}) {
                const Outcome outcome = run(command);
                if ((outcome.output + outcome.errors).contains("command denied"))
                    commands.append(command);
            }
            return commands.join(',');
        };
        QCOMPARE(denied(), QString("history,check"));
        bench->schema.exec("GRANT SELECT ON emails TO least");
        QCOMPARE(denied(), QString());
    }

private:
    using Rights = QVector<QPair<QString, QString>>;

    /// Returns the statements of the page's first block of SQL, for this test's databases.
    QString statements() const
    {
        const QString page = QString::fromUtf8(readFile(AUTOREPORT_OPERATIONS));
        return page.section("```sql\n", 1, 1)
            .section("```", 0, 0)
            .replace("CREATE USER", "CREATE OR REPLACE USER")
            .replace("'zas'", "'least'")
            .replace("kovovyroba", bench->schema.name())
            .replace("info.", info->name() + '.');
    }

    /// Both reports are due, and read all that they can.
    void grant() const
    {
        info->exec("DELETE FROM `schemas`");
        info->exec(statements());
        bench->schema.exec("DELETE FROM vars");
        for (const QString report : {"DailyAtten", "MonthlyAtten"}) {
            bench->set("autoReport." + report + ".enabled", "1");
            bench->set("autoReport." + report + ".emails", "a@firma.sk");
        }
        bench->set("dattenInters", "1");
    }

    Rights grantedOn(const QString &database) const
    {
        Rights rights;
        const QRegularExpression pattern("GRANT ([A-Z, ]+) ON " + database + "\\.(\\S+) TO");
        for (auto match = pattern.globalMatch(statements()); match.hasNext();) {
            const auto found = match.next();
            for (const QString &right : found.captured(1).split(", "))
                rights.append({right, found.captured(2)});
        }
        return rights;
    }

    /// Returns the warnings and errors of a tick of both reports.
    QStringList complaintsOfBoth(const QSqlDatabase &database) const
    {
        bench->schema.exec(
            "DELETE FROM emails;\nDELETE FROM vars WHERE name LIKE '%lastGenerated'");
        const int before = bench->log.texts(QtWarningMsg).size();
        const int beforeCritical = bench->log.texts(QtCriticalMsg).size();
        for (const ReportKind *kind : reportKinds())
            createReport(*kind, database)->doWork();
        return bench->log.texts(QtWarningMsg).mid(before) +
               bench->log.texts(QtCriticalMsg).mid(beforeCritical);
    }

    const QString connectionName = TestServer::ownPrefix + "least";
};

QTEST_GUILESS_MAIN(TestRights)
#include "tst_rights.moc"
