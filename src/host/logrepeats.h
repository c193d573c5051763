#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/**
 * Keeps what repeats from flooding the operator's log.
 *
 * A text is shown at once, while it repeats once an hour with its count, and at once again when it
 * comes back after an hour of silence. No clock inside: `nowMs` only has to go forward. Not for two
 * threads at a time.
 */
class LogRepeats
{
public:
    /// Whether to show this occurrence; otherwise it is counted.
    bool isShown(const QString &text, qint64 nowMs);

    /// What is to be shown by now of the counted ones, once: "text (N times in the last hour)".
    QStringList takeSummaries(qint64 nowMs);

private:
    struct Seen {
        qint64 shownMs; ///< when its text or its count was shown last
        qint64 lastMs;
        int hidden = 0; ///< occurrences since
    };

    QHash<QString, Seen> seen;
    qint64 nextLookMs = 0; ///< no summary is due before
};
