#pragma once

#include "support/hostprogram.h"
#include "support/reportbench.h"
#include "support/testhost.h"

/// Base of test classes of the program that gives each test function an information database, which
/// lists the bench's schema as "firm", and a program that is not started yet.
class HostTest : public ReportTest
{
    Q_OBJECT

protected:
    /// Serves the schemas of the information database.
    void serve(const QStringList &options = {}) { serveDatabase(info->name(), options); }
    /// Serves the bench's schema alone.
    void serveSingle(const QStringList &options = {})
    {
        serveDatabase(bench->schema.name(), QStringList("--single") + options);
    }

    void prepare() override
    {
        info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
        info->addSchemas({"firm"}, bench->schema.name());
        program = std::make_unique<HostProgram>();
        environment = TestServer::environment();
    }

    std::unique_ptr<TestDatabase> info;
    std::unique_ptr<HostProgram> program;
    QProcessEnvironment environment; ///< of the program

private:
    void serveDatabase(const QString &name, const QStringList &options)
    {
        program->start(QStringList("serve") + options + TestServer::options(name), environment);
    }
};
