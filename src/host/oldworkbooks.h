#pragma once

class QDate;
class QDir;

/**
 * Removes the reports' workbooks of past months from `folder`. Returns how many it removed.
 *
 * Keeps files that were changed within the last day, and everything that is not a regular file of
 * this account.
 */
int removeOldWorkbooks(const QDir &folder, const QDate &today);
