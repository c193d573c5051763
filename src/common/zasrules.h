#pragma once

#include <QString>

/// Helper functions for rounding steps, mail addresses, shifts and interruptions. Any thread may
/// call them; `thinZAS` is the only state.
namespace ZAS
{

/// Whether the thin-client variant is running. The host sets it at start-up.
extern bool thinZAS;

/// Returns "T-ZAS" for the thin client, otherwise "ZAS".
QString getProgramName();

/// Convert between a rounding step and its index. The indexes 1 to 5 stand for 60, 300, 900, 1800
/// and 3600 seconds. Any other index or step becomes 0, which means no rounding.
int roundIndexToVal(int index);
int roundValToIndex(int seconds);
/// Returns the translated label of a rounding step.
QString roundValToString(int seconds);

/// Convert between an interval for the list of day issues, in seconds, and the index of that
/// interval. The indexes 1 to 3 stand for 60, 300 and 900 seconds. An interval of more than 900
/// seconds also becomes index 3. Any other index or interval becomes 0.
int dayIssuesIndexFromInterval(unsigned short seconds);
unsigned short dayIssuesIntervalFromIndex(int index);

/// Returns whether the text is exactly one mail address. Ignores case.
bool validEmail(const QString &address);

/// Returns whether a database error reports a duplicate key.
bool checkDuplicateEntry(const QString &errorText);

/// Returns `length` random characters of `alphabet`, each equally likely, or an empty text if
/// `alphabet` is empty. Not for secrets.
QString getRandomString(int length, const QString &alphabet);

/// Returns the key of a shift in one person's plan: the three numbers as "shift-day-order".
QString shiftKeyFromNum(int shift, unsigned char dayOfMonth, unsigned char order);

/// Returns the text that users see for a shift: the number, then "/" and the variant unless the
/// variant is 0, then "*" if the shift was changed. The text of a planned shift is in parentheses.
QString makeShiftString(unsigned char shift, unsigned char variant, bool changed, bool planned);

/// Return the first interruption in a list, and its shortcut, which is the abbreviation of its
/// kind: "D 1.5-2x" and "D" for "[D 1.5-2x][L 0.25]". Return an empty text if `interruptions` does
/// not begin with an interruption in brackets.
QString firstInterruption(const QString &interruptions);
QString shortcutFromInters(const QString &interruptions);

} // namespace ZAS
