#pragma once

#include <QString>

/// Small rules of the product: rounding steps, addresses, texts of shifts and interruptions. Any
/// thread may call them; `thinZAS` is the only state.
namespace ZAS
{

/// Whether the thin-client variant is running. The host sets it at start-up.
extern bool thinZAS;

/// Returns "T-ZAS" for the thin client, otherwise "ZAS".
QString getProgramName();

/// Convert between a rounding step and its index: indexes 1 to 5 are 60, 300, 900, 1800 and 3600
/// seconds; anything else is 0, no rounding.
int roundIndexToVal(int index);
int roundValToIndex(int seconds);
/// Returns the translated label of a rounding step.
QString roundValToString(int seconds);

/// Convert between an interval of the list of day issues and its index: indexes 1 to 3 are 60, 300
/// and 900 seconds. More than 900 seconds is index 3 too; anything else is 0.
int dayIssuesIndexFromInterval(unsigned short seconds);
unsigned short dayIssuesIntervalFromIndex(int index);

/// Returns whether the text is exactly one mail address. Ignores case.
bool validEmail(const QString &address);

/// Returns whether a database error reports a duplicate key.
bool checkDuplicateEntry(const QString &errorText);

/// Returns `length` random characters of `alphabet`, each equally likely, or an empty text if
/// `alphabet` is empty. Not for secrets.
QString getRandomString(int length, const QString &alphabet);

/// Returns the key of a shift in one person's plan: "number-day-order", decimal.
QString shiftKeyFromNum(int shift, unsigned char dayOfMonth, unsigned char order);

/// Returns a shift as shown to users: the number, then "/" and the variant unless that is 0, then
/// "*" if the shift was changed. A shift that is only planned is in parentheses.
QString makeShiftString(unsigned char shift, unsigned char variant, bool changed, bool planned);

/// Return the text of the first interruption in a list, and its shortcut: "D 1.5-2x" and "D" for
/// "[D 1.5-2x][L 0.25]". Return an empty text if `interruptions` is not such a list.
QString firstInterruption(const QString &interruptions);
QString shortcutFromInters(const QString &interruptions);

} // namespace ZAS
