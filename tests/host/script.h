#pragma once

#include "support/testdata.h"

/// A program in Python that runs beside the host until the object ends.
class Script
{
public:
    Script(const QString &text, const QStringList &arguments)
    {
        const QString modules("import os, socket, sys, time\n");
        process.start("python3", QStringList{"-c", modules + text} + arguments);
    }
    ~Script()
    {
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY(Script)

    /// Returns what it has printed since the last call.
    QByteArray output() { return process.readAllStandardOutput(); }
    /// Waits until it prints, and returns that.
    QByteArray next()
    {
        process.waitForReadyRead(patienceMs);
        return output();
    }
    /// Waits for its end, and returns the rest of its output.
    QByteArray rest()
    {
        process.waitForFinished(patienceMs);
        return output();
    }

private:
    QProcess process;
};
