#pragma once

#include "db/varstable.h"
#include "options/usage.h"
#include "tool/invocation.h"

#include <QVector>

/// The settings that `set` is to store for one report in one or more schemas.
struct SetRequest {
    QStringList tokens;    ///< each once; not yet looked up in the table `schemas`
    bool isForAll = false; ///< for every active schema; `tokens` is then empty
    const ReportKind *kind = nullptr;
    VarsTable::Values values; ///< by their full keys; never empty
};

/// Adds the options that say what to store and in which schemas.
void describeSetRequests(QCommandLineParser &parser);

/**
 * The request on the command line or, with "--file", a request for each line of the file except
 * blank lines and comments.
 *
 * The constructor checks every request, up to the first error. If there is an error, `list` must
 * not be used. An error in a file names the line.
 */
struct SetRequests {
    explicit SetRequests(const Invocation &invocation);

    QVector<SetRequest> list;
    UsageError error; ///< its text is empty if there is none

private:
    void readFile(const Invocation &invocation);
    void readLine(const QString &line, const QString &synopsis);
};
