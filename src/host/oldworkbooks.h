#pragma once

class QDate;
class QDir;

/**
 * Removes the reports' workbooks of months before that of `today` from `folder` and returns how
 * many.
 *
 * Keeps whatever was changed within the last day, and everything that is not a regular file of this
 * account.
 */
int removeOldWorkbooks(const QDir &folder, const QDate &today);
