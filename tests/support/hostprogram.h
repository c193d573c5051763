#pragma once

#include "support/testdata.h"
#include "support/testserver.h"

#include <csignal>

/// The program as a process, judged by its output and its exit status alone.
class HostProgram
{
public:
    void start(const QStringList &arguments,
               const QProcessEnvironment &environment = TestServer::environment())
    {
        process.setProcessEnvironment(environment);
        process.start(AUTOREPORT_PROGRAM, arguments);
        // If the system refuses the process, Qt takes -1 for its number, takes it for running and
        // ends it by kill(-1), which ends all processes.
        if (process.processId() <= 0)
            qFatal("test bench: cannot start the program");
    }

    /// For the next start: the file to write standard error or standard output to instead.
    void logTo(const QString &path) { process.setStandardErrorFile(path); }
    void outputTo(const QString &path) { process.setStandardOutputFile(path); }
    qint64 id() const { return process.processId(); }

    /// Nothing once the program has ended: its number is 0 then, our own process group's.
    void send(int signal) const
    {
        if (process.processId() > 0)
            ::kill(pid_t(process.processId()), signal);
    }
    int exitCode() const { return process.exitCode(); }
    QString output() { return QString::fromUtf8(process.readAllStandardOutput()); }

    /// Returns everything written to standard error so far.
    QString readLog()
    {
        QCoreApplication::processEvents(); // takes what the pipe holds
        return log += QString::fromUtf8(process.readAllStandardError());
    }

    /// Returns whether the text appears in the log so often, before the program ends.
    bool logs(const QString &text, int times = 1)
    {
        return QTest::qWaitFor([&] { return readLog().count(text) >= times || isOver(); },
                               patienceMs) &&
               readLog().count(text) >= times;
    }

    /// Returns whether the program ended without being killed.
    bool ended(int timeoutMs = patienceMs)
    {
        const bool end = isOver() || process.waitForFinished(timeoutMs);
        readLog();
        return end && process.exitStatus() == QProcess::NormalExit;
    }

    bool succeeded()
    {
        if (ended() && exitCode() == 0)
            return true;
        qWarning("exit code %d, log:\n%s", exitCode(), qUtf8Printable(log));
        return false;
    }

    /// Ends the program by the signal. Returns whether it succeeded.
    bool stops(int signal = SIGTERM)
    {
        send(signal);
        return succeeded();
    }

    QString log;

private:
    bool isOver() const { return process.state() == QProcess::NotRunning; }

    QProcess process;
};
