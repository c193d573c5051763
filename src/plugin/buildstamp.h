#pragma once

#include <QString>

/**
 * The build's moment as "yyMMddhhmm", made from the texts of the compiler's __DATE__ and
 * __TIME__; empty when they cannot be read.
 */
QString buildStamp(const QString &dateText, const QString &timeText);
