#pragma once

#include "support/hostprogram.h"
#include "support/reportbench.h"
#include "support/testhost.h"

/// Base of test classes of the program that gives each test function an information database, which
/// lists the bench's schema as "firm", a host that is not started yet, and the other commands.
class HostTest : public ReportTest
{
    Q_OBJECT

protected:
    /// How a command ended; its status is -1 if it was killed.
    struct Outcome {
        int status;
        QString output;
        QString errors;
        QJsonObject json() const { return QJsonDocument::fromJson(output.toUtf8()).object(); }
    };

    /// Serves the schemas of the information database.
    void serve(const QStringList &options = {})
    {
        const QStringList database = TestServer::options(info->name());
        program->start(QStringList("serve") + database + options, environment);
    }
    /// Serves the bench's schema alone.
    void serveSingle(const QStringList &options = {})
    {
        serve(QStringList{"--single", "--db-name", bench->schema.name()} + options);
    }

    /// Starts another command at the information database, unless its options lead elsewhere. Its
    /// output goes to a file unless `output` is empty.
    std::unique_ptr<HostProgram> start(const QString &arguments, const QString &output = {}) const
    {
        auto tool = std::make_unique<HostProgram>();
        QStringList words = QProcess::splitCommand(arguments);
        words.replaceInStrings(QRegularExpression("^''$"), QString()); // which it cannot express
        tool->outputTo(output);
        tool->start(words.mid(0, 1) + TestServer::options(info->name()) + words.mid(1),
                    environment);
        return tool;
    }
    /// Runs such a command to its end.
    Outcome run(const QString &arguments, const QString &outputFile = QString()) const
    {
        const auto tool = start(arguments, outputFile);
        const bool ended = tool->ended();
        return {ended ? tool->exitCode() : -1, tool->output(), tool->log};
    }

    /// Runs the program at the information database by a shell's script, in which "$@" stands for
    /// it. Returns its status.
    int runInShell(const QString &script, const QStringList &words) const
    {
        QProcess shell;
        shell.setProcessEnvironment(environment);
        shell.start("sh", QStringList{"-c", script, "sh", AUTOREPORT_PROGRAM, words.first()} +
                              TestServer::options(info->name()) + words.mid(1));
        return shell.waitForFinished(patienceMs) ? shell.exitCode() : -1;
    }

    void prepare() override
    {
        info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
        info->addSchemas({"firm"}, bench->schema.name());
        program = std::make_unique<HostProgram>();
        environment = TestServer::environment();
    }

    std::unique_ptr<TestDatabase> info;
    std::unique_ptr<HostProgram> program; ///< the host
    QProcessEnvironment environment;      ///< of all of them
};
