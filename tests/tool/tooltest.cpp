#include "tool/tooltest.h"

void ToolTest::init()
{
    bench = std::make_unique<ReportBench>();
    info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
    info->addSchemas({"firm"}, bench->schema.name());
}

void ToolTest::cleanup()
{
    info.reset();
    bench.reset();
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
    auto tool = std::make_unique<QProcess>();
    tool->setProcessEnvironment(TestServer::environment(faked ? moment : QString()));
    tool->start(AUTOREPORT_PROGRAM, arguments + TestServer::options(info->name()));
    return tool;
}

ToolTest::Outcome ToolTest::run(const QStringList &arguments, bool faked) const
{
    const auto tool = start(arguments, faked);
    const bool ended = tool->waitForFinished(60000) && tool->exitStatus() == QProcess::NormalExit;
    return {ended ? tool->exitCode() : -1, QString::fromUtf8(tool->readAllStandardOutput()),
            QString::fromUtf8(tool->readAllStandardError())};
}
