#pragma once

#include "tool/schemajudge.h"

#include <functional>

class Schemas;

/// The outcome of judgeAll().
struct SchemasJudged {
    QVector<SchemaJudgement> list; ///< in the order of the rows
    bool isComplete = true; ///< false: the server stopped answering, so schemas may be missing
};

/**
 * Judges many schemas with a few threads, each with one connection at a time.
 *
 * Calls `progress` in the calling thread after each judged schema. Once the server no longer
 * answers, skips the remaining schemas: all of them are on that server, and a timeout for each
 * could take hours.
 */
SchemasJudged judgeAll(const Schemas &schemas, const QVector<SchemaRow> &rows,
                       const SchemaJudge &judge, const std::function<void()> &progress);
