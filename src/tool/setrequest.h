#pragma once

#include "db/varstable.h"
#include "options/usage.h"
#include "tool/invocation.h"

#include <QVector>

/// Settings of one report that `set` is to store in each of several schemas.
struct SetRequest {
    QStringList tokens;    ///< each once; there may be no such schema
    bool isForAll = false; ///< for every active schema; then there are no tokens
    const ReportKind *kind = nullptr;
    VarsTable::Values values; ///< by their full keys; never empty
};

/// Adds the options for what to store, and in which schemas.
void describeSetRequests(QCommandLineParser &parser);

/**
 * The request on the command line, or one request per line of its "--file".
 *
 * All requests are checked before anything is stored. After the first error, which names the line,
 * `list` must not be used.
 */
struct SetRequests {
    explicit SetRequests(const Invocation &invocation);

    QVector<SetRequest> list;
    UsageError error; ///< its text is empty if there is none

private:
    void readFile(const Invocation &invocation);
    void readLine(const QString &line, const QString &synopsis);
};
