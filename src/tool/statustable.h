#pragma once

#include "tool/schemastatus.h"

#include <QJsonObject>

/// Within 120 columns: a line per report, and below a sentence for each that needs a look.
QString statusTable(const QVector<ReportStatus> &reports);

/// Everything about one report, for monitors. Moments are ISO 8601 with offset, or null.
QJsonObject statusJson(const ReportStatus &report);
