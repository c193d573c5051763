#pragma once

#include "tool/reporthistory.h"

#include <QByteArray>

/**
 * Returns a page in HTML, UTF-8: today's problems, then each report with its strip of days.
 *
 * It needs no other file, and a browser loads none: its policy allows only its own style and
 * script. Without the script it cannot be sorted, but reads the same. All that comes from a
 * database is escaped.
 */
QByteArray historyPage(const QVector<ReportHistory> &reports, const HistoryWindow &window);
