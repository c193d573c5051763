#include "support/testserver.h"

#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTest>

#include <csignal>
#include <memory>

using Environment = QMap<QString, QString>;
Q_DECLARE_METATYPE(Environment)

// The program as a process, judged by its output and its exit status alone.
class TestHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void commandLine_data();
    void commandLine();
    void configuration_data();
    void configuration();
    void failsWithOneLine_data();
    void failsWithOneLine();
    void serves_data();
    void serves();
    void stopsByItself();

private:
    void start(const QStringList &arguments, const Environment &environment = {});
    bool logs(const QString &text);
    bool ended();
    QStringList databaseOptions(const QString &databaseName) const;

    std::unique_ptr<TestDatabase> info;
    std::unique_ptr<TestDatabase> schema;
    std::unique_ptr<QProcess> program;
    QString log;
};

void TestHost::init()
{
    info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
    schema = std::make_unique<TestDatabase>(TestDatabase::Tables::Schema);
    info->exec(QString("INSERT INTO `schemas` (token, name, user, pass) VALUES ('firm', '%1', "
                       "'autoreport', 'c2VjcmV0')")
                   .arg(schema->name()));
    program = std::make_unique<QProcess>();
    log.clear();
}

void TestHost::cleanup()
{
    program.reset(); // kills it when a test failed half way
    schema.reset();
    info.reset();
}

QStringList TestHost::databaseOptions(const QString &databaseName) const
{
    return {"serve",
            "--db-host",
            TestServer::host(),
            "--db-port",
            QString::number(TestServer::port()),
            "--db-user",
            TestServer::user(),
            "--db-name",
            databaseName};
}

void TestHost::start(const QStringList &arguments, const Environment &environment)
{
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    all.insert("AUTOREPORT_DB_PASSWORD", TestServer::password());
    for (auto entry = environment.cbegin(); entry != environment.cend(); ++entry)
        all.insert(entry.key(), entry.value());
    program->setProcessEnvironment(all);
    program->start(AUTOREPORT_PROGRAM, arguments);
}

// Whether the program's log says so within a while.
bool TestHost::logs(const QString &text)
{
    return QTest::qWaitFor(
        [&] {
            program->waitForReadyRead(50);
            log += QString::fromUtf8(program->readAllStandardError());
            return log.contains(text);
        },
        20000);
}

bool TestHost::ended()
{
    return (program->state() == QProcess::NotRunning || program->waitForFinished()) &&
           program->exitStatus() == QProcess::NormalExit;
}

void TestHost::commandLine_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");
    const QString most = "serve --db-host h --db-user u --db-name n ";
    QTest::newRow("help") << "--help" << 0 << "--password-file";
    QTest::newRow("version") << "--version" << 0 << "autoreport 1.2.3\n";
    QTest::newRow("nothing") << "" << 2 << "no command given";
    QTest::newRow("command") << "sevre" << 2 << "unknown command 'sevre'";
    QTest::newRow("argument") << most + "x" << 2 << "unexpected argument 'x'";
    QTest::newRow("unknown option") << most + "--nonsense" << 2 << "'nonsense'";
    QTest::newRow("password in sight") << most + "--db-password=x" << 2 << "'db-password'";
    QTest::newRow("missing option") << most << 2 << "--db-port is missing";
    QTest::newRow("missing value") << most + "--db-port" << 2 << "'--db-port'";
    QTest::newRow("no number") << most + "--db-port 80a" << 2 << "--db-port must be a number";
    QTest::newRow("port") << most + "--db-port 65536" << 2 << "from 1 to 65535, not '65536'";
    QTest::newRow("debug") << most + "--db-port 1 --debug 256" << 2 << "--debug must";
    QTest::newRow("run") << most + "--db-port 1 --run-for 0" << 2 << "--run-for must";
    QTest::newRow("no configuration") << most + "--config /no/such" << 1 << "'/no/such': No such";
    QTest::newRow("password file") << most + "--db-port 1 --password-file /no/such" << 1
                                   << "cannot read the password file '/no/such'";
}

void TestHost::commandLine()
{
    QFETCH(QString, arguments);
    QFETCH(int, status);
    QFETCH(QString, text);
    start(arguments.split(' ', Qt::SkipEmptyParts));
    QVERIFY(ended());
    QCOMPARE(program->exitCode(), status);
    const QString output = QString::fromUtf8(program->readAllStandardOutput());
    const QString errors = QString::fromUtf8(program->readAllStandardError());
    const QString &spoken = status == 0 ? output : errors;
    QVERIFY2(spoken.contains(text), qPrintable(spoken));
    QVERIFY((status == 0 ? errors : output).isEmpty());
    QCOMPARE(errors.contains("Usage: "), status == 2);
}

void TestHost::configuration_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<bool>("isOpen");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");
    const QString way = QString("[database]\nhost=127.0.0.1\nport=%1\nname=here\nuser=%2\n")
                            .arg(TestServer::port())
                            .arg(TestServer::user());
    QTest::newRow("password") << way + "password=secret\n"
                              << false << 1 << "Unknown database 'here'";
    QTest::newRow("quoted") << way + "password=\"se,cret\"\n" << false << 1 << "Access denied";
    QTest::newRow("escaped") << way + "password=\"\\\"se;\\\\cret@@\"\n" << false << 1 << "Access";
    for (const char *password : {"se,cret", "@@secret", "\"@@secret\"", "se;cret", "se\\tcret"})
        QTest::newRow(password) << way + "password=" + password << false << 1
                                << "'database/password' in the configuration";
    QTest::newRow("flag") << way + "single=no\n" << false << 1 << "must be true or false, not 'no'";
    QTest::newRow("open, password") << way + "password=secret" << true << 1 << "chmod o-rwx /";
    QTest::newRow("open, without") << way << true << 1 << "no password: set AUTOREPORT_DB_PASSWORD";
    QTest::newRow("password file") << way + "password-file=/no/such\n" << true << 1 << "'/no/such'";
    QTest::newRow("wrong key") << way + "pasword=x\n" << false << 1 << "key 'database/pasword'";
    QTest::newRow("incomplete") << "[database]\nhost=h\n" << true << 2 << "--db-port is missing";
}

void TestHost::configuration()
{
    QFETCH(QString, content);
    QFETCH(bool, isOpen);
    QFETCH(int, status);
    QFETCH(QString, text);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(content.toUtf8());
    file.close();
    QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner;
    QVERIFY(file.setPermissions(isOpen ? permissions | QFile::ReadOther : permissions));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("AUTOREPORT_DB_PASSWORD");
    program->setProcessEnvironment(environment);
    program->start(AUTOREPORT_PROGRAM, {"serve", "--config", file.fileName()});
    QVERIFY(ended());
    const QString errors = QString::fromUtf8(program->readAllStandardError());
    QVERIFY2(errors.contains(text), qPrintable(errors));
    QCOMPARE(program->exitCode(), status);
    QVERIFY(!errors.contains("cret"));
}

void TestHost::failsWithOneLine_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("text");
    const QString foreign =
        QLibraryInfo::location(QLibraryInfo::PluginsPath) + "/sqldrivers/libqsqlmysql.so";
    QTest::newRow("no server") << "--db-port"
                               << "1"
                               << "can not open the database 'here' on 127";
    QTest::newRow("wrong user") << "--db-user"
                                << "nobody"
                                << "Access denied";
    QTest::newRow("no such database") << "--db-name"
                                      << "nowhere"
                                      << "Unknown database 'nowhere'";
    QTest::newRow("no such plug-in") << "--plugin"
                                     << "/no/such.so"
                                     << "no such file";
    QTest::newRow("text as plug-in") << "--plugin" << __FILE__ << "it is no plug-in";
    QTest::newRow("foreign plug-in") << "--plugin" << foreign << "for something else";
}

void TestHost::failsWithOneLine()
{
    QFETCH(QString, option);
    QFETCH(QString, value);
    QFETCH(QString, text);
    for (const bool single : {false, true}) {
        start(databaseOptions("here") + QStringList({option, value}) +
              (single ? QStringList("--single") : QStringList()));
        QVERIFY(ended());
        QCOMPARE(program->exitCode(), 1);
        const QString errors = QString::fromUtf8(program->readAllStandardError());
        QVERIFY2(errors.contains(text), qPrintable(errors));
        QCOMPARE(errors.count('\n'), 1);
    }
}

void TestHost::serves_data()
{
    QTest::addColumn<bool>("single");
    QTest::addColumn<Environment>("environment");
    QTest::addColumn<int>("stopSignal");
    const Environment noGlib = {{"QT_NO_GLIB", "1"}};
    QTest::newRow("information database") << false << Environment() << SIGTERM;
    QTest::newRow("the other dispatcher") << false << noGlib << SIGINT;
    QTest::newRow("one schema") << true << Environment() << SIGINT;
    QTest::newRow("one schema, the other dispatcher") << true << noGlib << SIGTERM;
}

void TestHost::serves()
{
    QFETCH(bool, single);
    QFETCH(Environment, environment);
    QFETCH(int, stopSignal);
    QTemporaryFile passwordFile;
    QVERIFY(passwordFile.open());
    passwordFile.write("secret\r\nmore\n");
    passwordFile.close();
    environment.insert("AUTOREPORT_DB_PASSWORD", "wrong");
    QStringList arguments = databaseOptions(single ? schema->name() : info->name());
    arguments << "--debug"
              << "2"
              << "--password-file" << passwordFile.fileName();
    start(single ? arguments << "--single" : arguments, environment);
    const auto send = [this](int number) {
        ::kill(static_cast<pid_t>(program->processId()), number);
    };

    QVERIFY(logs(single ? "AutoReport - is info db: NO" : "AutoReport - is info db: YES"));
    // The scan leaves a connection to the schema, which the host must give back.
    QVERIFY(logs(single ? "Host - serving" : "DBManager::getDatabase(firm)"));
    send(SIGUSR1);
    QVERIFY(logs("INFO AutoReport - PAUSE\n"));
    send(SIGUSR2);
    QVERIFY(logs("INFO AutoReport - RESUME\n"));
    send(stopSignal);
    QVERIFY(logs("INFO Host - stopped\n"));
    QVERIFY(ended());
    QCOMPARE(program->exitCode(), 0);

    QVERIFY(log.contains("AutoReport - STOP"));
    QCOMPARE(log.contains("_dbc_firm)"), !single); // offered for removal
    QVERIFY2(!log.contains("WARNING") && !log.contains("CRITICAL"), qPrintable(log));
    QVERIFY(!log.contains("secret"));
    static const QRegularExpression lines(R"(^([\d-]{10} [\d:]{8} (DEBUG|INFO) [^\n]+\n)+$)");
    QVERIFY2(lines.match(log).hasMatch(), qPrintable(log));
}

void TestHost::stopsByItself()
{
    // A sanitizer wants to be the first library; here faketime is.
    const QString sanitizer = qEnvironmentVariable("ASAN_OPTIONS") + ":verify_asan_link_order=0";
    const Environment inThePast = {{"LD_PRELOAD", AUTOREPORT_FAKETIME},
                                   {"FAKETIME", "@2023-11-15 07:00:00"},
                                   {"ASAN_OPTIONS", sanitizer}};
    start(databaseOptions(info->name()) + QStringList({"--run-for", "1"}), inThePast);
    QVERIFY(logs("Host - stopped"));
    QVERIFY(ended());
    QCOMPARE(program->exitCode(), 0);
    QVERIFY2(log.startsWith("2023-11-15 07:00:0"), qPrintable(log));
    QVERIFY(!log.contains("DEBUG"));
}

QTEST_GUILESS_MAIN(TestHost)
#include "tst_host.moc"
