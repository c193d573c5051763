#pragma once

#include "support/reportbench.h"
#include "support/testdata.h"

#include <QObject>
#include <QProcess>

#include <memory>

/**
 * What tests of the operator's commands share: an information database that lists one schema,
 * "firm", and the program as a process, judged by its output and its exit status.
 *
 * The moment is a morning in 2023, so that what is due does not depend on when the tests run.
 */
class ToolTest : public QObject
{
    Q_OBJECT

protected:
    struct Outcome {
        int status = -1;
        QString output;
        QString errors;
    };

    /// Starts `autoreport` with the options of the connection added.
    std::unique_ptr<QProcess> start(const QStringList &arguments) const
    {
        auto tool = std::make_unique<QProcess>();
        tool->setProcessEnvironment(TestServer::environment(moment));
        tool->start(AUTOREPORT_PROGRAM, arguments + TestServer::options(info->name()));
        return tool;
    }
    /// The same to its end.
    Outcome run(const QStringList &arguments) const
    {
        const auto tool = start(arguments);
        const bool ended =
            tool->waitForFinished(60000) && tool->exitStatus() == QProcess::NormalExit;
        return {ended ? tool->exitCode() : -1, QString::fromUtf8(tool->readAllStandardOutput()),
                QString::fromUtf8(tool->readAllStandardError())};
    }
    /// As it is on a good day: one person, made this morning.
    void setUpDailyReport() const
    {
        bench->set("autoReport.DailyAtten.enabled", "1");
        bench->set("autoReport.DailyAtten.emails", "a@firma.sk");
        bench->set("autoReport.DailyAtten.time", "07:00");
        bench->set("autoReport.DailyAtten.lastGenerated", "1700028002");
        bench->schema.exec("INSERT INTO people (pid, surname, name) VALUES (7, 'Novák', 'Ján')");
    }

    std::unique_ptr<ReportBench> bench; ///< with the schema "firm"
    std::unique_ptr<TestDatabase> info;
    const QString moment = "2023-11-15 09:30:00";

private Q_SLOTS:
    void initTestCase() { ReportBench::setTimeZone(); }
    void init()
    {
        bench = std::make_unique<ReportBench>();
        info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
        info->addSchemas({"firm"}, bench->schema.name());
    }
    void cleanup()
    {
        info.reset();
        bench.reset();
    }
};
