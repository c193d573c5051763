#pragma once

#include <QString>

/// Small rules of the product: rounding steps, addresses, texts of shifts and interruptions. None
/// but `thinZAS` holds a state; any thread may call them.
namespace ZAS
{

/// The thin-client variant is running. The host sets it when it starts.
extern bool thinZAS;

/// "T-ZAS" for the thin client, else "ZAS".
QString getProgramName();

/// Rounding steps: indexes 1 to 5 are 60, 300, 900, 1800 and 3600 seconds; all else is 0, none.
int roundIndexToVal(int index);
int roundValToIndex(int seconds);
/// The step's label, translatable.
QString roundValToString(int seconds);

/// Steps of the list of day issues: 60, 300 and 900 seconds are 1, 2 and 3; above 900 is 3 too.
int dayIssuesIndexFromInterval(unsigned short seconds);
unsigned short dayIssuesIntervalFromIndex(int index);

/// Whether the whole text is one address, upper or lower case.
bool validEmail(const QString &address);

/// Whether a database error tells of a key that exists already.
bool checkDuplicateEntry(const QString &errorText);

/// `length` characters out of `alphabet`, each equally likely; empty without an alphabet. Not for
/// secrets.
QString getRandomString(int length, const QString &alphabet);

/// The key of a shift in one person's plan: "number-day-order", decimal.
QString shiftKeyFromNum(int shift, unsigned char dayOfMonth, unsigned char order);

/// A shift as people read it: the number, "/" and the variant where that is not 0, "*" for a
/// changed one, and in brackets when it is only planned.
QString makeShiftString(unsigned char shift, unsigned char variant, bool changed, bool planned);

/// Out of a list of interruptions such as "[D 1.5-2x][L 0.25]": the text of the first ("D 1.5-2x"),
/// and its shortcut ("D"). Empty when the text is no such list.
QString firstInterruption(const QString &interruptions);
QString shortcutFromInters(const QString &interruptions);

} // namespace ZAS
