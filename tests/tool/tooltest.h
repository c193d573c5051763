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
    std::unique_ptr<QProcess> start(const QStringList &arguments, bool faked = true) const;
    /// The same to its end.
    Outcome run(const QStringList &arguments, bool faked = true) const;
    /// As it is on a good day: one person, made this morning.
    void setUpDailyReport() const;

    std::unique_ptr<ReportBench> bench; ///< with the schema "firm"
    std::unique_ptr<TestDatabase> info;
    const QString moment = "2023-11-15 09:30:00";

private Q_SLOTS:
    void initTestCase() { ReportBench::setTimeZone(); }
    void init();
    void cleanup();
};
