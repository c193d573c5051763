#include "host/logrepeats.h"

#include <algorithm>

namespace
{

constexpr qint64 hourMs = 3600000;

} // namespace

bool LogRepeats::isShown(const QString &text, qint64 nowMs)
{
    const auto known = seen.find(text);
    if (known == seen.end() || nowMs - known->lastMs >= hourMs) {
        seen.insert(text, {nowMs, nowMs});
        nextLookMs = std::min(nextLookMs, nowMs + hourMs);
        return true;
    }
    known->lastMs = nowMs;
    ++known->hidden;
    return false;
}

QStringList LogRepeats::takeSummaries(qint64 nowMs)
{
    QStringList summaries;
    if (nowMs < nextLookMs)
        return summaries;
    nextLookMs = nowMs + hourMs;
    for (auto it = seen.begin(); it != seen.end();) {
        if (nowMs - it->shownMs >= hourMs && it->hidden > 0) {
            summaries.append(QStringLiteral("%1 (%2 times in the last hour)")
                                 .arg(it.key(), QString::number(it->hidden)));
            it->shownMs = nowMs;
            it->hidden = 0;
        }
        if (it->hidden == 0 && nowMs - it->lastMs >= hourMs) {
            it = seen.erase(it); // not seen for an hour: the next occurrence is shown
            continue;
        }
        nextLookMs = std::min(nextLookMs, it->shownMs + hourMs);
        ++it;
    }
    summaries.sort();
    return summaries;
}
