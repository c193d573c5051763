#pragma once

#include "tool/finding.h"

class HistoryWindow;
class QSqlDatabase;
struct Machine;
struct ReportKind;
struct ReportSettings;

/// Returns whether an enabled report counts as made on the last day of the window.
bool countsAsMade(const ReportSettings &settings, const HistoryWindow &window);

/**
 * Checks whether a report that counts as made today has mails: the monthly report counts as made
 * even if all its mails were refused.
 *
 * Adds no finding if a host says that it has queued mails of the report today. Nor does it add one
 * if the latest mails contain no sent mail of the report from an earlier day: the product may
 * delete sent mails, so missing mails then prove nothing.
 */
void checkQueued(const QSqlDatabase &database, const ReportKind &kind,
                 const ReportSettings &settings, const Machine &machine,
                 const HistoryWindow &window, Findings &findings);
