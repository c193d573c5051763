#pragma once

#include "support/reportbench.h"

#include <QProcess>

/**
 * What tests of the operator's commands share: an information database that lists one schema,
 * "firm", as it is on a good day, with one person and a report made this morning, and the program
 * as a process, judged by its output and its exit status.
 *
 * The moment is a morning in 2023, so that what is due does not depend on when the tests run.
 */
class ToolTest : public ReportTest
{
    Q_OBJECT

protected:
    struct Outcome {
        int status = -1;
        QString output;
        QString errors;
    };

    /// Starts `autoreport` with the options of the connection added; its output goes to a file
    /// unless `outputFile` is empty.
    std::unique_ptr<QProcess> start(const QString &arguments,
                                    const QString &outputFile = QString()) const
    {
        auto tool = std::make_unique<QProcess>();
        if (!outputFile.isEmpty())
            tool->setStandardOutputFile(outputFile);
        QProcessEnvironment environment = TestServer::environment(moment);
        if (!temporaryFolder.isEmpty())
            environment.insert("TMPDIR", temporaryFolder);
        tool->setProcessEnvironment(environment);
        tool->start(AUTOREPORT_PROGRAM,
                    QProcess::splitCommand(arguments) + TestServer::options(info->name()));
        return tool;
    }
    /// The same to its end.
    Outcome run(const QString &arguments, const QString &outputFile = QString()) const
    {
        const auto tool = start(arguments, outputFile);
        const bool ended =
            tool->waitForFinished(patienceMs) && tool->exitStatus() == QProcess::NormalExit;
        return {ended ? tool->exitCode() : -1, QString::fromUtf8(tool->readAllStandardOutput()),
                QString::fromUtf8(tool->readAllStandardError())};
    }

    std::unique_ptr<TestDatabase> info; ///< lists the bench's schema as "firm"
    const QString moment = "2023-11-15 09:30:00";
    QString temporaryFolder; ///< of the program, unless it is empty

private:
    void prepare() override
    {
        temporaryFolder.clear();
        info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
        info->addSchemas({"firm"}, bench->schema.name());
        bench->schema.exec("INSERT INTO people (pid, surname, name) VALUES (7, 'Novák', 'Ján')");
        bench->set("autoReport.DailyAtten.enabled", "1");
        bench->set("autoReport.DailyAtten.emails", "a@firma.sk");
        bench->set("autoReport.DailyAtten.time", "07:00");
        bench->set("autoReport.DailyAtten.lastGenerated", "1700028002");
    }
};
