#include "host/hosttest.h"

#include <QDir>

#include <cerrno>

#include <sys/resource.h>
#include <unistd.h>

/// The socket at which a host is asked, read by another program than the one that made it.
class TestInquiry : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void tellsOfRuns()
    {
        serve();
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

        const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther |
                            QFile::WriteOther | QFile::ExeOther;
        QVERIFY(!(QFileInfo(socket()).permissions() & others));
        program->send(SIGUSR1);
        QTRY_VERIFY_WITH_TIMEOUT(ask()["paused"].toBool(), patienceMs);
        QCOMPARE(answer["nextScan"].toInt(), 0);
        QVERIFY(program->stops());
        QVERIFY(!QFileInfo::exists(socket()));
    }

    void tellsOfFailures_data()
    {
        addColumns<QString, QString, QString, QString>("change", "temporary", "cause", "text");
        addRow("directory", "DO 0", "/proc", "workbook", "XLS not saved!; '/proc/");
        addRow("nobody", "DELETE FROM people", "/tmp", "no_people", "no people!");
        addRow("queue", "DROP TABLE emails", "/tmp", "mail", "MailRepository::addMail() ");
    }

    void tellsOfFailures()
    {
        QFETCH(QString, change);
        QFETCH(QString, temporary);
        QFETCH(QString, cause);
        QFETCH(QString, text);
        bench->schema.exec(change);
        environment.insert("TMPDIR", temporary);
        serve({"--debug", "1"});
        for (const QString kind : {"daily", "monthly"}) {
            QTRY_COMPARE_WITH_TIMEOUT(outcome(kind, "lastFailure")["cause"].toString(), cause,
                                      patienceMs);
            const QString found = outcome(kind, "lastFailure")["text"].toString();
            QVERIFY2(found.startsWith(text), qPrintable(found));
            QVERIFY(outcome(kind, "last")["moment"].toDouble() > 0);
        }
        QCOMPARE(answer["temporaryWritable"].toBool(), temporary == "/tmp");
    }

    /// A client that connects and takes nothing, and a host that was killed.
    void outlivesOthers()
    {
        writeFile(folder() + "/1.socket", {});
        serve();
        QTRY_VERIFY_WITH_TIMEOUT(!socket().isEmpty(), patienceMs);
        QProcess idler;
        idler.start("python3", {"-c",
                                "import socket, sys, time\n"
                                "all = [socket.socket(socket.AF_UNIX) for _ in range(100)]\n"
                                "for one in all: one.connect(sys.argv[1])\n"
                                "print('connected', flush=True)\n"
                                "time.sleep(60)",
                                socket()});
        QVERIFY(idler.waitForReadyRead(patienceMs));
        QTRY_VERIFY_WITH_TIMEOUT(schema("firm")["served"].toBool(), patienceMs);
        idler.kill();
        idler.waitForFinished();
        const QString left = socket();
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
        addColumns<QString, QString, int>("other", "error", "answers");
        const QString listen = "import socket, sys\n"
                               "one = socket.socket(socket.AF_UNIX)\n"
                               "one.bind(sys.argv[1])\n"
                               "one.listen()\n"
                               "print('listens', flush=True)\n";
        addRow("silent", listen + "sys.stdin.read()", "/0.socket': it did not answer in time", 1);
        addRow("endless", listen + "to = one.accept()[0]\nwhile True: to.send(b'[' * 65536)",
               "/0.socket': its answer is longer than 64 MiB", 1);
        if (::geteuid() != 0)
            return; // only root can give a folder away
        addRow("another account",
               "import os, sys\n"
               "folder = os.path.dirname(sys.argv[1])\n"
               "os.chmod(os.path.dirname(folder), 0o1777)\n"
               "os.chown(folder, 65534, -1)\n"
               "print('owns', flush=True)",
               "/hosts': it belongs to another account", 0);
    }

    void asksBesideOthers()
    {
        QFETCH(QString, other);
        serve();
        QTRY_VERIFY_WITH_TIMEOUT(schema("firm")["served"].toBool(), patienceMs);
        QProcess python;
        python.start("python3", {"-c", other, folder() + "/0.socket"});
        QVERIFY(python.waitForReadyRead(patienceMs));
        HostProgram status;
        status.start(QStringList{"status", "--json"} + TestServer::options(info->name()),
                     environment);
        QVERIFY(status.ended());
        const auto found = QJsonDocument::fromJson(status.output().toUtf8()).object();
        QTEST(found["hosts"].toArray().size(), "answers");
        QFETCH(QString, error);
        const QString silent = found["silentHosts"].toArray()[0].toString();
        QVERIFY2(silent.endsWith(error), qPrintable(silent));
        python.kill();
        python.waitForFinished();
        QVERIFY(program->stops());
    }

    void outlivesShortage()
    {
        serve();
        QTRY_VERIFY_WITH_TIMEOUT(outcome("daily", "last")["mails"].toInt() == 2, patienceMs);
        const QString path = socket();
        const rlimit before = limitFiles({firstFreeFile(), RLIM_INFINITY});
        QVERIFY(ask().isEmpty());
        QVERIFY(program->logs("asked by the operator's commands: '" + path +
                              "' was closed: " + qt_error_string(EMFILE)));
        limitFiles(before);
        QVERIFY(program->logs("can be asked by the operator's commands again"));
        QVERIFY(ask()["schemas"].toObject().contains("firm"));
        QCOMPARE(socket(), path);
        QCOMPARE(program->log.count("cannot be asked"), 1);
        QVERIFY(program->stops());
    }

    void servesWithoutSocket()
    {
        environment.insert("RUNTIME_DIRECTORY", "/dev/null");
        serve();
        QVERIFY(program->logs("cannot be asked by the operator's commands: '/dev/null': "));
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
    }

    QString folder() const { return bench->temporary.filePath("hosts"); }

    /// Returns the path of the running host's socket, empty if there is none.
    QString socket() const
    {
        const QString path = folder() + QString("/%1.socket").arg(program->id());
        return QFileInfo::exists(path) ? path : QString();
    }

    /// Returns the lowest number that no file of the host has.
    rlim_t firstFreeFile() const
    {
        rlim_t file = 0;
        while (QFileInfo(QString("/proc/%1/fd/%2").arg(program->id()).arg(file)).isSymLink())
            ++file;
        return file;
    }
    /// Sets the host's limit for files and returns the former one.
    rlimit limitFiles(rlimit limit) const
    {
        rlimit former = {};
        ::prlimit(pid_t(program->id()), RLIMIT_NOFILE, nullptr, &former);
        limit.rlim_max = former.rlim_max;
        ::prlimit(pid_t(program->id()), RLIMIT_NOFILE, &limit, nullptr);
        return former;
    }

    QJsonObject ask()
    {
        QProcess python;
        python.start("python3", {"-c",
                                 "import socket, sys\n"
                                 "host = socket.socket(socket.AF_UNIX)\n"
                                 "host.connect(sys.argv[1])\n"
                                 "while part := host.recv(9999): sys.stdout.buffer.write(part)",
                                 socket()});
        python.waitForFinished(patienceMs);
        answer = QJsonDocument::fromJson(python.readAllStandardOutput()).object();
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

    QJsonObject answer; ///< as last received
};

QTEST_GUILESS_MAIN(TestInquiry)
#include "tst_inquiry.moc"
