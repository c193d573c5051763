#include "support/hostprogram.h"
#include "support/testhost.h"

#include <algorithm>

/// A host at work for long: reports made due again and again, the server restarted, pauses.
/// The suite runs a short form. AUTOREPORT_SOAK_SECONDS=600 AUTOREPORT_SOAK_SCHEMAS=200 is the
/// long one; it prints what the host holds after each round.
class TestSoak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void soak()
    {
        const int count = qEnvironmentVariable("AUTOREPORT_SOAK_SCHEMAS", "20").toInt();
        const int lengthMs = qEnvironmentVariable("AUTOREPORT_SOAK_SECONDS", "30").toInt() * 1000;
        TestHost information;
        for (int i = 0; i < count; ++i) {
            schemas.push_back(std::make_unique<TestDatabase>(TestDatabase::Tables::Schema));
            addPeople(*schemas.back(), 5);
            enableDailyReport(*schemas.back(), "a@firma.sk");
            information.addSchemas({QString("t%1").arg(i)}, *schemas.back());
        }
        QProcessEnvironment environment =
            TestServer::environment(QString("2026-11-10 01:00:00 x%1").arg(speed));
        environment.insert("TMPDIR", server.folder.path());
        host.logTo(log);
        host.start(QStringList("serve") + TestServer::options(information.infoDatabase().name()),
                   environment);

        QElapsedTimer elapsed;
        elapsed.start();
        int rounds = 0, restarts = 0, pauses = 0;
        Holdings first = {}, last = {};
        while (elapsed.elapsed() < lengthMs || restarts < 2) {
            const bool pausing = rounds % 5 == 2;
            if (pausing) {
                ++pauses;
                host.send(SIGUSR1);
                QTRY_COMPARE_WITH_TIMEOUT(logged("Worker - pause()"), pauses * count, patienceMs);
            }
            for (const auto &schema : schemas) {
                if (rounds > 0)
                    makeDue(*schema);
            }
            if (pausing) {
                QTest::qWait(2 * 60000 / speed); // two ticks
                QCOMPARE(made(), 0);
                host.send(SIGUSR2);
            } else if (restarts < 2 && elapsed.elapsed() > lengthMs * (restarts + 1) / 3) {
                server.restart();
                for (const auto &schema : schemas)
                    schema->database().close(); // the next statement opens it again
                ++restarts;
            }
            QTRY_COMPARE_WITH_TIMEOUT(made(), count, patienceMs);
            // A worker may have made its report before the restart, and not seen that one yet.
            QTRY_VERIFY_WITH_TIMEOUT((last = holdings()).connections > count, patienceMs);
            if (++rounds == 1)
                first = last;
            qInfo("after round %i: %i KiB, %i threads, %i files, %i connections", rounds,
                  last.memoryKiB, last.threads, last.files, last.connections);
        }
        QCOMPARE(last.threads, first.threads);
        QVERIFY(last.files <= first.files);
        // A restart drops the scan's connections, which are not opened again.
        QVERIFY(last.connections <= first.connections);
        QVERIFY(sanitized || last.memoryKiB < first.memoryKiB * 5 / 4);

        QVERIFY(host.stops());
    }

private:
    static constexpr int speed = 20; // the host's clock runs so much faster, and so do its minutes

    /// The resources that an idle host holds.
    struct Holdings {
        int memoryKiB, threads, files;
        int connections; ///< of the server, the bench's own among them
    };

    int logged(const char *part) const { return readFile(log).count(part); }

    /// Returns how many schemas have their report, and only once.
    int made() const
    {
        const QString sql = "SELECT (SELECT COUNT(*) FROM emails) = 1 AND "
                            "EXISTS (SELECT 1 FROM vars WHERE name LIKE '%lastGenerated')";
        return int(std::count_if(schemas.begin(), schemas.end(), [&sql](const auto &schema) {
            return schema->value(sql).toBool();
        }));
    }

    Holdings holdings() const
    {
        const QString process = QString("/proc/%1/").arg(host.id());
        const QString status = readFile(process + "status") + readFile(process + "smaps_rollup");
        const auto number = [&status](const QString &key) {
            return status.section("\n" + key + ":", 1).simplified().section(' ', 0, 0).toInt();
        };
        return {
            number("Rss"), number("Threads"),
            static_cast<int>(QDir(process + "fd").entryList(QDir::Files | QDir::System).size()),
            schemas.front()->value("SELECT COUNT(*) FROM information_schema.processlist").toInt()};
    }

    const OwnServer server;
    const QString log = server.folder.filePath("log");
    std::vector<std::unique_ptr<TestDatabase>> schemas;
    HostProgram host;
};

const bool longLimit = qputenv("QTEST_FUNCTION_TIMEOUT", "3600000"); // else five minutes

QTEST_GUILESS_MAIN(TestSoak)
#include "tst_soak.moc"
