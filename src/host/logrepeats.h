#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/**
 * Keeps repeated messages from flooding the operator's log.
 *
 * A text is shown when it first occurs. While it repeats, it is shown once an hour, with its count.
 * If it does not occur for an hour, its next occurrence counts as the first again. The caller
 * supplies a monotonic time. Not thread-safe.
 */
class LogRepeats
{
public:
    /// Returns whether to show this occurrence. Counts an occurrence that is not shown.
    bool isShown(const QString &text, qint64 nowMs);

    /// Returns the summaries that are due, each once: "text (N times in the last hour)".
    QStringList takeSummaries(qint64 nowMs);

    /// Returns how many different texts occurred within about the last hour.
    int count() const { return seen.size(); }

private:
    struct Seen {
        qint64 shownMs; ///< when the text or its count was last shown
        qint64 lastMs;  ///< when the text last occurred
        int hidden = 0; ///< occurrences since `shownMs`
    };

    QHash<QString, Seen> seen;
    qint64 nextLookMs = 0; ///< no summary is due before this time
};
