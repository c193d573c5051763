#include "tool/tooltest.h"

void ToolTest::init()
{
    bench = std::make_unique<ReportBench>();
    info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
    addSchema("firm", bench->schema.name());
}

void ToolTest::cleanup()
{
    info.reset();
    bench.reset();
}

void ToolTest::addSchema(const QString &token, const QString &database) const
{
    info->exec(QString("INSERT INTO `schemas` (token, name, user, pass) VALUES ('%1', '%2', "
                       "'autoreport', 'c2VjcmV0')")
                   .arg(token, database));
}

void ToolTest::setUpDailyReport() const
{
    bench->set("autoReport.DailyAtten.enabled", "1");
    bench->set("autoReport.DailyAtten.emails", "a@firma.sk");
    bench->set("autoReport.DailyAtten.time", "07:00");
    bench->set("autoReport.DailyAtten.lastGenerated", "1700028002");
    bench->schema.exec("INSERT INTO people (pid, surname, name) VALUES (7, 'Novák', 'Ján')");
}

std::unique_ptr<QProcess> ToolTest::start(const QStringList &arguments, bool faked) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("AUTOREPORT_DB_PASSWORD", TestServer::password());
    if (faked)
        environment.insert("LD_PRELOAD", AUTOREPORT_FAKETIME);
    environment.insert("FAKETIME", "@" + moment);
    environment.insert("FAKETIME_DONT_FAKE_MONOTONIC", "1");
    environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
    auto tool = std::make_unique<QProcess>();
    tool->setProcessEnvironment(environment);
    tool->start(AUTOREPORT_PROGRAM,
                arguments + QStringList{"--db-host", TestServer::host(), "--db-port",
                                        QString::number(TestServer::port()), "--db-user",
                                        TestServer::user(), "--db-name", info->name()});
    return tool;
}

ToolTest::Outcome ToolTest::run(const QStringList &arguments, bool faked) const
{
    const auto tool = start(arguments, faked);
    const bool ended = tool->waitForFinished(60000) && tool->exitStatus() == QProcess::NormalExit;
    return {ended ? tool->exitCode() : -1, QString::fromUtf8(tool->readAllStandardOutput()),
            QString::fromUtf8(tool->readAllStandardError())};
}
