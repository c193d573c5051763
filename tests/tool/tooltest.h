#pragma once

#include "host/hosttest.h"

/// What tests of the operator's commands share: a schema as it is on a good day, with one person
/// and a report made this morning. The moment is a morning in 2023, so that what is due does not
/// depend on when the tests run.
class ToolTest : public HostTest
{
    Q_OBJECT

protected:
    void prepare() override
    {
        HostTest::prepare();
        environment = TestServer::environment("2023-11-15 09:30:00");
        bench->schema.exec("INSERT INTO people (pid, surname, name) VALUES (7, 'Novák', 'Ján')");
        enableDailyReport(bench->schema, "a@firma.sk");
        bench->set("autoReport.DailyAtten.time", "07:00");
        bench->set("autoReport.DailyAtten.lastGenerated", "1700028002");
    }

    /// Enables the monthly report in the same way.
    void enableBoth() const { enableBothReports(bench->schema, "a@firma.sk"); }
};
