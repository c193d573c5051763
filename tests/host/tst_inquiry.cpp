#include "host/hosttest.h"
#include "host/script.h"
#include "support/relay.h"

#include <cerrno>

#include <unistd.h>

/// What a host says of itself, at its socket and to Prometheus, read by other programs.
class TestInquiry : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void tellsOfRuns()
    {
        serve({"--metrics", place});
        QTRY_VERIFY_WITH_TIMEOUT(outcome("daily", "last")["mails"].toInt() == 2, patienceMs);
        QCOMPARE(outcome("monthly", "last")["mails"].toInt(), 2);
        QCOMPARE(outcome("daily", "last")["cause"].toString(), QString());
        QCOMPARE(outcome("daily", "lastFailure")["moment"].toInt(), 0);
        const double now = answer["moment"].toDouble();
        QVERIFY(qAbs(now - double(QDateTime::currentSecsSinceEpoch())) < 60);
        QVERIFY(answer["since"].toDouble() <= answer["lastScan"].toDouble());
        QVERIFY(qAbs(answer["nextScan"].toDouble() - answer["since"].toDouble() - 3600) < 60);
        QVERIFY(now - schema("firm")["lastTick"].toDouble() < 60);
        QVERIFY(schema("firm")["served"].toBool());
        QCOMPARE(answer["schemas"].toObject().keys(), QStringList{"firm"});
        QCOMPARE(answer["database"].toString(), info->name());
        QCOMPARE(answer["zone"].toString(), QString("Europe/Bratislava"));
        for (const QString kind : {"daily", "monthly"}) {
            QVERIFY(shows("autoreport_reports_made_total{kind=\"" + kind + "\"} 1"));
            QVERIFY(shows("autoreport_mails_queued_total{kind=\"" + kind + "\"} 2"));
            QVERIFY(shows("autoreport_report_duration_seconds_count{kind=\"" + kind + "\"} 1"));
            QVERIFY(shows("autoreport_last_success_timestamp_seconds{schema=\"firm\",kind=\"" +
                          kind + "\"} "));
        }
        const QString line = " INFO firm: %1AttenReport::makeReport\\(\\) - run ended after "
                             "\\d+\\.\\d{3} s, rows: %2, mails queued: 2\n";
        QVERIFY(program->logs("run ended", 2));
        const int days = QDate::currentDate().day();
        QVERIFY(program->log.contains(QRegularExpression(line.arg("Daily").arg(days))));
        QVERIFY(program->log.contains(QRegularExpression(line.arg("Monthly").arg(1))));
        QVERIFY(shows("autoreport_workers 1"));
        QVERIFY(!shown.contains("autoreport_reports_failed_total{"));

        program->send(SIGHUP);
        QVERIFY(shows(R"(autoreport_mails_waiting{schema="firm"} 4)"));
        QVERIFY(shows("autoreport_scan_duration_seconds_count 2"));
        const QString oldest = R"(autoreport_oldest_mail_timestamp_seconds{schema="firm"} )";
        QVERIFY(shows(oldest + bench->schema.value("SELECT MIN(created) FROM emails").toString()));
        judgedByPromtool();
        documentsNameWhatIsServed();

        program->send(SIGUSR1);
        QTRY_VERIFY_WITH_TIMEOUT(ask()["paused"].toBool(), patienceMs);
        QCOMPARE(answer["nextScan"].toInt(), 0);
        const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther |
                            QFile::WriteOther | QFile::ExeOther;
        QVERIFY(!(QFileInfo(socket()).permissions() & others));
        QVERIFY(program->stops());
        QVERIFY(!QFileInfo::exists(socket()));
    }

    void tellsOfFailures_data()
    {
        addRow("directory", "DO 0", "/proc", "workbook", "XLS not saved!; '/proc/");
        addRow("nobody", "DELETE FROM people", "/tmp", "no_people", "no people!");
        addRow("people", "DROP TABLE people", "/tmp", "query", "people SQL ");
        addRow("blank", "UPDATE vars SET value = ' , ' WHERE name LIKE '%.emails'", "/tmp",
               "recipients", "all recipients are blank");
        addRow("queue", "DROP TABLE emails", "/tmp", "mail", "MailRepository::addMail() ");
    }

    void tellsOfFailures()
    {
        const auto [change, temporary, cause, text] = fetch<QString, QString, QString, QString>();
        bench->schema.exec(change);
        environment.insert("TMPDIR", temporary);
        serve({"--metrics", place, "--debug", "1"});
        for (const QString kind : {"daily", "monthly"}) {
            const QString line = R"(autoreport_reports_failed_total{kind="%1",cause="%2"} 1)";
            QVERIFY2(shows(line.arg(kind, cause)), qPrintable(shown));
            QCOMPARE(outcome(kind, "lastFailure")["cause"].toString(), cause);
            const QString found = outcome(kind, "lastFailure")["text"].toString();
            QVERIFY2(found.startsWith(text), qPrintable(found));
            QVERIFY(outcome(kind, "last")["moment"].toDouble() > 0);
        }
        QVERIFY(!shown.contains("last_success_timestamp_seconds{"));
        QCOMPARE(answer["temporaryWritable"].toBool(), temporary == "/tmp");
    }

    /// A client that connects and takes nothing, and a host that was killed.
    void outlivesOthers()
    {
        writeFile(folder() + "/1.socket", {});
        serve();
        QTRY_VERIFY_WITH_TIMEOUT(!socket().isEmpty(), patienceMs);
        const QString left = socket();
        {
            Script idler("all = [socket.socket(socket.AF_UNIX) for _ in range(100)]\n"
                         "for one in all: one.connect(sys.argv[1])\n"
                         "print('connected', flush=True)\ntime.sleep(60)",
                         {left});
            QVERIFY(!idler.next().isEmpty());
            QTRY_VERIFY_WITH_TIMEOUT(schema("firm")["served"].toBool(), patienceMs);
        }
        HostProgram beside;
        beside.start(QStringList("serve") + TestServer::options(info->name()), environment);
        QVERIFY(beside.logs("AutoReport - START"));
        program->send(SIGKILL);
        QVERIFY(!program->ended());
        QVERIFY(QFileInfo::exists(left));
        serve();
        QTRY_VERIFY_WITH_TIMEOUT(schema("firm")["served"].toBool(), patienceMs);
        QVERIFY(!QFileInfo::exists(left));
        const auto sockets = QDir(folder()).entryList(QDir::System | QDir::Files);
        QCOMPARE(sockets.size(), 3); // the file, and the two that run
        QVERIFY(beside.stops());
    }

    /// Others in the folder, asked by the program before the host.
    void asksBesideOthers_data()
    {
        const QString listen = "one = socket.socket(socket.AF_UNIX)\n"
                               "one.bind(sys.argv[1])\none.listen()\n"
                               "print('ready', flush=True)\n";
        addRow("silent", listen + "sys.stdin.read()", "/0.socket': it did not answer in time", 1);
        addRow("endless", listen + "to = one.accept()[0]\nwhile True: to.send(b'[' * 65536)",
               "/0.socket': its answer is longer than 64 MiB", 1);
        if (::geteuid() != 0)
            return; // only root can give a folder away
        addRow("another account",
               "folder = os.path.dirname(sys.argv[1])\n"
               "os.chmod(os.path.dirname(folder), 0o1777)\n"
               "os.chown(folder, 65534, -1)\nprint('ready', flush=True)",
               "/hosts': it belongs to another account", 0);
    }

    void asksBesideOthers()
    {
        const auto [other, error, answers] = fetch<QString, QString, int>();
        serve();
        QTRY_VERIFY_WITH_TIMEOUT(schema("firm")["served"].toBool(), patienceMs);
        Script beside(other, {folder() + "/0.socket"});
        QVERIFY(!beside.next().isEmpty());
        const QJsonObject found = run("status --json").json();
        QCOMPARE(found["hosts"].toArray().size(), answers);
        const QString silent = found["silentHosts"].toArray()[0].toString();
        QVERIFY2(silent.endsWith(error), qPrintable(silent));
        QVERIFY(program->stops());
    }

    void outlivesShortage()
    {
        serve();
        QTRY_VERIFY_WITH_TIMEOUT(outcome("daily", "last")["mails"].toInt() == 2, patienceMs);
        const QString path = socket();
        const QString id = QString::number(program->id());
        int files = 0;
        while (QFileInfo(QString("/proc/%1/fd/%2").arg(id).arg(files)).isSymLink())
            ++files;
        const auto limitFiles = [&id](int limit) {
            const QString option = QString("--nofile=%1:").arg(limit);
            QCOMPARE(QProcess::execute("prlimit", {"--pid", id, option}), 0);
        };
        limitFiles(files);
        QVERIFY(ask().isEmpty());
        QVERIFY(program->logs("cannot answer the operator's commands: '" + path +
                              "' was closed: " + qt_error_string(EMFILE)));
        limitFiles(files + 100);
        QVERIFY(program->logs("can answer the operator's commands again"));
        QVERIFY(ask()["schemas"].toObject().contains("firm"));
        QCOMPARE(socket(), path);
        QCOMPARE(program->log.count("cannot answer"), 1);
        QVERIFY(program->stops());
    }

    void servesWithoutSocket()
    {
        environment.insert("RUNTIME_DIRECTORY", "/dev/null");
        serve();
        QVERIFY(program->logs("cannot answer the operator's commands: '/dev/null': "));
        QVERIFY(program->logs("worker created for schema 'firm'"));
    }

private:
    void prepare() override
    {
        HostTest::prepare();
        addPeople(bench->schema, 1);
        enableBothReports(bench->schema, "a@firma.sk, b@firma.sk");
        QDir(bench->temporary.path()).mkdir("hosts");
        environment.insert("RUNTIME_DIRECTORY", folder());
        place = "127.0.0.1:" + QString::number(Relay(0).port()); // free a moment ago
    }

    QString folder() const { return bench->temporary.filePath("hosts"); }

    /// Returns the path of the running host's socket, empty if there is none.
    QString socket() const
    {
        const QString path = folder() + QString("/%1.socket").arg(program->id());
        return QFileInfo::exists(path) ? path : QString();
    }

    QJsonObject ask()
    {
        Script asking("host = socket.socket(socket.AF_UNIX)\nhost.connect(sys.argv[1])\n"
                      "while part := host.recv(9999): sys.stdout.buffer.write(part)",
                      {socket()});
        answer = QJsonDocument::fromJson(asking.rest()).object();
        return answer;
    }
    QJsonObject schema(const QString &token)
    {
        return ask()["schemas"].toObject()[token].toObject();
    }
    QJsonObject outcome(const QString &kind, const QString &which)
    {
        return schema("firm")["reports"].toObject()[kind].toObject()[which].toObject();
    }

    /// Waits until a line of the metrics begins like that.
    bool shows(const QString &line)
    {
        const auto isShown = [&] {
            Script reading("import urllib.request\n"
                           "sys.stdout.buffer.write(urllib.request.urlopen(sys.argv[1]).read())",
                           {"http://" + place + "/metrics"});
            shown = QString::fromUtf8(reading.rest());
            return ("\n" + shown).contains("\n" + line);
        };
        return QTest::qWaitFor(isShown, patienceMs);
    }

    void judgedByPromtool() const
    {
        QProcess promtool;
        promtool.setProcessChannelMode(QProcess::MergedChannels);
        promtool.start("promtool", {"check", "metrics"});
        promtool.write(shown.toUtf8());
        promtool.closeWriteChannel();
        QVERIFY(promtool.waitForFinished(patienceMs));
        const QByteArray said = promtool.readAll();
        QVERIFY2(promtool.exitCode() == 0 && said.isEmpty(), said);
    }

    /// A metric that was renamed would leave an alert that never fires.
    void documentsNameWhatIsServed() const
    {
        static const QRegularExpression name(R"(\b(?:autoreport|process)_[a-z_]+)");
        for (const QString file : {"alerts.yml", "grafana.json"}) {
            auto matches = name.globalMatch(readFile(AUTOREPORT_MONITORING_DIR "/" + file));
            QVERIFY(matches.hasNext());
            while (matches.hasNext()) {
                const QString metric = matches.next().captured();
                const QRegularExpression served("\n(# TYPE )?" + metric + "[{ ]");
                QVERIFY2(shown.contains(served), qPrintable(metric));
            }
        }
    }

    QJsonObject answer; ///< as last received
    QString place;      ///< of the metrics
    QString shown;      ///< the metrics as last read
};

QTEST_GUILESS_MAIN(TestInquiry)
#include "tst_inquiry.moc"
