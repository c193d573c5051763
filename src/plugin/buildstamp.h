#pragma once

#include <QString>

/**
 * Returns the time of the build as "yyMMddhhmm", from the texts of the compiler's __DATE__ and
 * __TIME__. Returns an empty text if one of these texts cannot be parsed.
 */
QString buildStamp(const QString &dateText, const QString &timeText);
