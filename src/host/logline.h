#pragma once

#include <QByteArray>
#include <QString>

/// How a log line shows its time and severity.
enum class LogStyle {
    Plain,  ///< "2026-11-22T06:12:00+01:00 WARNING text"
    Journal ///< "<4>text": the journal adds the time and filters by the priority
};

/// Returns Journal if the service manager has connected `descriptor` to its journal, else Plain.
LogStyle logStyleOf(int descriptor);

/// Returns the text as one line of UTF-8, including the line end. In the text, " | " replaces each
/// line feed, and U+FFFD replaces each other character for which isControl() returns true.
QByteArray logLine(LogStyle style, QtMsgType type, const QString &text);
