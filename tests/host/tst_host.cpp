#include "host/hosttest.h"
#include "support/relay.h"

#include <sys/resource.h>

// The program as a process, judged by its output and its exit status alone.
class TestProgram : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void commandLine_data()
    {
        const QString most = "serve --db-host h --db-user u --db-name n ";
        const QString all = most + "--db-port 1 ";
        addRow("help", "--help", 0, "--password-file");
        addRow("nothing", "", 2, "no command given");
        addRow("command", "sevre", 2, "unknown command 'sevre'\nDid you mean 'serve'?\n");
        addRow("password in sight", most + "--db-password=x", 2, "'db-password'");
        addRow("missing option", most, 2, "--db-port is missing");
        addRow("missing port", most + "--db-host h:1,h", 2, "--db-port is missing");
        addRow("ports of all servers", most + "--db-host h:1,h:2 --metrics x", 2, "an address");
        addRow("password file", all + "--password-file /no/such", 1,
               "cannot read the password file '/no/such'");
        const QString way = "serve " + TestServer::options("here").join(' ');
        const QString foreign =
            QLibraryInfo::location(QLibraryInfo::PluginsPath) + "/sqldrivers/libqsqlmysql.so";
        addRow("wrong user", way + " --db-user nobody", 1, "Access denied");
        addRow("no such database", way, 1, "Unknown database 'here'");
        addRow("silent server", way + " --db-port SILENT", 1, "cannot open the database");
        addRow("foreign plug-in", way + " --plugin " + foreign, 1, "its interface is org.qt");
        addRow("no port for metrics", all + "--metrics 127.0.0.1", 2, "an address with a port");
        addRow("metrics not here", way + " --metrics 192.0.2.1:9469", 1,
               "cannot serve metrics at 192.0.2.1:9469");
    }

    void commandLine()
    {
        auto [arguments, status, text] = fetch<QString, int, QString>();
        Relay silent(TestServer::port());
        silent.freeze();
        arguments.replace("SILENT", QString::number(silent.port()));
        for (const QString command : {"serve ", "serve --single "}) {
            program = std::make_unique<HostProgram>();
            program->start(QProcess::splitCommand(QString(arguments).replace("serve ", command)));
            QVERIFY(program->ended());
            QCOMPARE(program->exitCode(), status);
            const QString output = program->output();
            const QString &spoken = status == 0 ? output : program->log;
            QVERIFY2(spoken.contains(text), qPrintable(spoken));
            QVERIFY((status == 0 ? program->log : output).isEmpty());
            const QRegularExpression hint("\nHelp: autoreport (serve )?--help\n$");
            QCOMPARE(program->log.contains(hint), status == 2);
            const int lines = status == 0 ? 0 : status == 1 ? 1 : 3;
            QVERIFY2(program->log.count('\n') == lines, qPrintable(program->log));
        }
    }

    void configuration_data()
    {
        const QString way = "[database]\nhost=127.0.0.1\nname=here\nuser=" + TestServer::user +
                            "\nport=" + QString::number(TestServer::port()) + '\n';
        addRow("password", way + "password=secret\n", "", "Unknown database 'here'");
        addRow("quoted", way + "password=\"se,cret\"\n", "", "Access denied");
        addRow("unquoted", way + "password=se,cret", "", "'database/password' in the");
        addRow("open, password", way + "password=secret", "open", "chmod o-rwx /");
        addRow("password file", way + "password-file=/no/such\n", "open", "'/no/such'");
        addRow("wrong key", way + "pasword=x\n", "", "key 'database/pasword'");
        // A copy that the service manager hands over, with modes of its own.
        addRow("of an open file", way + "password=secret", "copy", "run: chmod o-rwx /etc/passwd");
    }

    void configuration()
    {
        const auto [content, mode, text] = fetch<QString, QString, QString>();
        const QString file = bench->temporary.filePath("passwd"); // open to all in /etc
        writeFile(file, content.toUtf8());
        QVERIFY(QFile::setPermissions(file, mode == "open" ? QFile::ReadOwner | QFile::ReadOther
                                                           : QFile::ReadOwner));
        environment = QProcessEnvironment::systemEnvironment();
        if (mode == "copy")
            environment.insert("CREDENTIALS_DIRECTORY", bench->temporary.path());
        program->start({"serve", "--config", file}, environment);
        QVERIFY(program->ended());
        QVERIFY2(program->log.contains(text), qPrintable(program->log));
        QCOMPARE(program->exitCode(), 1);
        QVERIFY(!program->log.contains("cret"));
    }

    void serves_data()
    {
        addRow("information database", false, false, SIGTERM);
        addRow("the other dispatcher", false, true, SIGINT);
        addRow("one schema", true, false, SIGINT);
        addRow("one schema, the other dispatcher", true, true, SIGTERM);
    }

    void serves()
    {
        const auto [single, noGlib, stopSignal] = fetch<bool, bool, int>();
        writeFile(bench->temporary.filePath("password"), "secret\r\nmore\n");
        environment.insert("AUTOREPORT_DB_PASSWORD", "wrong");
        if (noGlib)
            environment.insert("QT_NO_GLIB", "1");
        const QStringList options{"--debug", "2", "--password-file",
                                  bench->temporary.filePath("password")};
        single ? serveSingle(options) : serve(options);
        QVERIFY(program->logs(QString("AutoReport - is info db: ") + (single ? "NO" : "YES")));
        // The scan leaves a connection to the schema, which the host must remove.
        QVERIFY(program->logs(single ? "Host - serving" : "DBManager::getDatabase(firm)"));
        program->send(SIGUSR1);
        QVERIFY(program->logs("INFO AutoReport - PAUSE\n"));
        program->send(SIGUSR2);
        QVERIFY(program->logs("INFO AutoReport - RESUME\n"));
        QVERIFY(program->stops(stopSignal));
        QVERIFY(program->log.contains("INFO Host - stopped\n"));
        QVERIFY(program->log.contains("AutoReport - STOP"));
        QCOMPARE(program->log.contains("_dbc_firm)"), !single); // offered for removal
        QVERIFY2(!program->log.contains("WARNING") && !program->log.contains("CRITICAL"),
                 qPrintable(program->log));
        QVERIFY(!program->log.contains("secret"));
        static const QRegularExpression lines(
            R"(^([\d-]{10}T[\d:]{8}(Z|[+-]\d\d:\d\d) (DEBUG|INFO) [^\n]+\n)+$)");
        QVERIFY2(lines.match(program->log).hasMatch(), qPrintable(program->log));
    }

    void outlivesLimitOnFileSize()
    {
        addPeople(bench->schema, 1);
        enableBothReports(bench->schema, "a@firma.sk");
        environment.insert("TMPDIR", bench->temporary.path());
        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        const rlimit low{1024, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &low); // inherited by the program
        serve();
        setrlimit(RLIMIT_FSIZE, &old);
        QVERIFY2(program->logs("': File too large\n", 2), qPrintable(program->log));
        for (const QString report : {"DailyAttenReport", "MonthlyAttenReport"})
            QVERIFY(program->log.contains(report + " - XLS not saved!\n"));
        QCOMPARE(bench->mails(), 0);
        QVERIFY(QDir(bench->temporary.path()).isEmpty(QDir::Files | QDir::Hidden));
        QVERIFY(program->stops());
    }

    void servesWithoutStreams()
    {
        QCOMPARE(runInShell("exec \"$@\" <&- >&- 2>&-", {"serve", "--run-for", "1"}), 0);
    }

    void clearsOldWorkbooks()
    {
        const QString now = QDate::currentDate().toString("MMyyyy");
        const QString past = QDate::currentDate().addMonths(-1).toString("MMyyyy");
        const QStringList old{"DennyReport_a_" + past + ".xls",
                              "MesReportDochadzky_a_b_" + past + ".xlsx"};
        QStringList kept{"DennyReport_a_" + now + ".xlsx", "DennyReport_a_" + past + ".xlsx.bak",
                         "Other_a_" + past + ".xlsx"};
        QDir folder(bench->temporary.path());
        QStringList touch{"--date", "2 days ago"};
        for (const QString &name : old + kept)
            touch += folder.filePath(name);
        QCOMPARE(QProcess::execute("touch", touch), 0);
        kept += "DennyReport_folder_" + past + ".xlsx";
        QVERIFY(folder.mkdir(kept.last()));
        kept += "DennyReport_fresh_" + past + ".xlsx";
        writeFile(folder.filePath(kept.last()), {});
        serve({"--clear-workbooks"});
        QVERIFY(program->logs("Host - 2 workbooks of past months removed"));
        QStringList left = folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        left.sort();
        kept.sort();
        QCOMPARE(left, kept);
        QVERIFY(program->stops());
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_host.moc"
