#pragma once

#include "tool/schemastatus.h"

#include <QJsonObject>

/// Returns the lines to print: a table of at most 120 columns with a row per report, and below it a
/// sentence of any length for each report that needs attention.
QStringList statusTable(const QVector<ReportStatus> &reports);

/// Returns everything about one report, for monitors. Moments are ISO 8601 with offset, ages are
/// seconds; absent values are null.
QJsonObject statusJson(const ReportStatus &report);
