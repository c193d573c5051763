#pragma once

#include "tool/schemajudge.h"

#include <QJsonObject>

/// A line of `status`: a report, or a schema whose reports could not be judged.
struct StatusLine {
    const SchemaJudgement *schema;
    const ReportJudgement *report; ///< null if the line is a schema

    const QVector<Finding> &findings() const;
    QString state() const;
    bool isProblem() const;
    bool isOff() const;
};

/// Returns the text to print: a table with a row for each of `lines`, and below the table a
/// sentence for each line that needs attention. Does not wrap the sentences. On a terminal, leaves
/// out columns that do not fit, but never SCHEMA, REPORT or STATE.
QStringList statusTable(const QVector<StatusLine> &lines);

/// Returns `line` as JSON, for monitors. Moments are in ISO 8601 format with an offset from UTC,
/// ages in seconds. Absent values are null. If the line is a schema, a report's keys are left out.
QJsonObject statusJson(const StatusLine &line);
