#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "tool/reportjob.h"
#include "tool/tooltest.h"

/// The rights that docs/operations.md grants to the account, exactly these.
class TestRights : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void aHostServesWithThem()
    {
        environment = TestServer::environment();
        serve({"--db-user", "least"});
        QTRY_COMPARE_WITH_TIMEOUT(bench->mails(), 2, patienceMs);
        program->send(SIGTERM);
        QVERIFY(program->ended());
        const QRegularExpression complaint(" (WARNING|CRITICAL) ");
        QVERIFY2(!program->log.contains(complaint), qPrintable(program->log));
        QVERIFY(bench->lastGenerated("DailyAtten").toInt() > 0);
        QVERIFY(bench->lastGenerated("MonthlyAtten").toInt() > 0);
    }

    /// With all of them no report complains, without any one of them one does.
    void noneCanBeLeftOut()
    {
        const QString connectionName = TestServer::ownPrefix + "least";
        {
            QSqlDatabase least = TestServer::addConnection(connectionName, bench->schema.name());
            least.setUserName("least");
            QVERIFY(least.open());
            QCOMPARE(complaintsOfBoth(least), 0);
            QCOMPARE(bench->mails(), 2);
            const QStringList granted = rights();
            QCOMPARE(granted.size(), 14);
            QCOMPARE(granted.first(), "SELECT ON " + info->name() + ".`schemas`");
            for (const QString &right : granted.mid(1)) {
                bench->schema.exec("REVOKE " + right + " FROM least");
                const int complaints = complaintsOfBoth(least);
                bench->schema.exec("GRANT " + right + " TO least");
                QVERIFY2(complaints > 0, qPrintable(right));
            }
        }
        QSqlDatabase::removeDatabase(connectionName);
    }

    void operatorsReadTheQueue()
    {
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
    /// Both reports are due, and read all that they can.
    void prepare() override
    {
        ToolTest::prepare();
        info->exec("DELETE FROM `schemas`");
        info->exec(statements());
        bench->schema.exec("DELETE FROM vars");
        enableBoth();
        bench->set("dattenInters", "1");
    }

    /// Returns the statements of the page's first block of SQL, for this test's databases.
    QString statements() const
    {
        const QString page = readFile(AUTOREPORT_OPERATIONS);
        return page.section("```sql\n", 1, 1)
            .section("```", 0, 0)
            .replace("CREATE USER", "CREATE OR REPLACE USER")
            .replace("'zas'", "'least'")
            .replace("kovovyroba", bench->schema.name())
            .replace("info.", info->name() + '.');
    }

    /// Returns the granted rights one by one, such as "INSERT ON firm.emails".
    QStringList rights() const
    {
        QStringList found;
        const QRegularExpression pattern("GRANT ([A-Z, ]+)( ON \\S+) TO");
        for (auto match = pattern.globalMatch(statements()); match.hasNext();) {
            const auto grant = match.next();
            for (const QString &right : grant.captured(1).split(", "))
                found.append(right + grant.captured(2));
        }
        return found;
    }

    /// Returns how many warnings and errors a tick of both reports logs.
    int complaintsOfBoth(const QSqlDatabase &database) const
    {
        makeDue(bench->schema);
        const auto logged = [this] {
            return bench->log.texts(QtWarningMsg).size() + bench->log.texts(QtCriticalMsg).size();
        };
        const int before = logged();
        for (const ReportKind *kind : reportKinds())
            createReport(*kind, database)->doWork();
        return logged() - before;
    }
};

QTEST_GUILESS_MAIN(TestRights)
#include "tst_rights.moc"
