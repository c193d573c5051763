#pragma once

#include "tool/reporthistory.h"

#include <QByteArray>

/**
 * Returns an HTML page in UTF-8: today's problems, then each report with its strip of days.
 *
 * The page needs no other file, and its content security policy forbids loading any. If the browser
 * runs no scripts, the page shows the same content, but cannot be sorted. All texts from databases
 * are escaped.
 */
QByteArray historyPage(const QVector<ReportHistory> &reports, const HistoryWindow &window);
