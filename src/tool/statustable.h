#pragma once

#include "tool/schemajudge.h"

#include <QJsonObject>

/// A line of `status`: a report, or a schema whose reports could not be judged.
struct StatusLine {
    const SchemaJudgement *schema;
    const ReportJudgement *report; ///< null for a schema

    const QVector<Finding> &findings() const;
    QString state() const;
    bool isProblem() const;
    bool isOff() const;
};

/// Returns the lines to print: a table with a row per line, and below it a sentence of any length
/// for each line that needs attention. On a terminal, leaves out columns that do not fit, but never
/// schema, report and state.
QStringList statusTable(const QVector<StatusLine> &lines);

/// Returns everything about one line, for monitors. Moments are ISO 8601 with offset, ages are
/// seconds; absent values are null.
QJsonObject statusJson(const StatusLine &line);
