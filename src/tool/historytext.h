#pragma once

#include "tool/reporthistory.h"

#include <QJsonObject>

/// Returns the word for a state: "made", "waiting", "none" or "not due".
QString stateWord(DayState state);

/// Returns what became of a day's mails: "2 mails: 1 sent, 1 waiting", or "1 mail sent". Returns
/// the word for the day's state if there are no mails.
QString mailsText(const ReportDay &day);

/// Returns the lines to print: a table with a strip of days per report, a legend, and a sentence
/// for each report that needs attention.
QStringList historyTable(const QVector<ReportHistory> &reports);

/// Returns a line for each day on which the report has mails, or should have some.
QStringList historyDays(const ReportHistory &report);

/// Returns the report's status and days. Moments are in ISO 8601 format with an offset from UTC.
/// Absent values are null.
QJsonObject historyJson(const ReportHistory &report);
