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
    VarsTable::Values values; ///< by whole keys; never empty
};

/// Adds the options that say what to store, and where.
void describeSetRequests(QCommandLineParser &parser);

/**
 * Returns what the command line asks for, or one request for each line of its "--file".
 *
 * Everything is read and checked before anything is stored: after the first error, which names the
 * line, the list is not to be used.
 */
struct SetRequests {
    explicit SetRequests(const Invocation &invocation);

    QVector<SetRequest> list;
    UsageError error; ///< its text is empty if there is none

private:
    void readFile(const Invocation &invocation);
    void readLine(const QString &line, const QString &synopsis);
};
