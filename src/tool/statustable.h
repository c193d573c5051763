#pragma once

#include "tool/schemastatus.h"

#include <QJsonObject>

/// The lines to print, within 120 columns: one per report, and below a sentence, of any length, for
/// each that needs a look.
QStringList statusTable(const QVector<ReportStatus> &reports);

/// Everything about one report, for monitors. Moments are ISO 8601 with offset, ages seconds;
/// absent values are null.
QJsonObject statusJson(const ReportStatus &report);
