#include "common/period.h"

QDate firstOfMonth(const QDate &date)
{
    return QDate(date.year(), date.month(), 1);
}

QDateTime dayStart(const QDate &date)
{
    // If midnight occurs twice, startOfDay() returns the midnight with the UTC offset that the C
    // library used last. The earlier midnight has the offset of the evening before.
    constexpr qint64 eveningSeconds = 21600;
    const QDateTime start = date.startOfDay();
    const int offset =
        QDateTime::fromSecsSinceEpoch(start.toSecsSinceEpoch() - eveningSeconds).offsetFromUtc();
    const qint64 asUtc = QDateTime(date, QTime(0, 0), Qt::UTC).toSecsSinceEpoch();
    const QDateTime earlier = QDateTime::fromSecsSinceEpoch(asUtc - offset);
    return earlier.date() == date && earlier.time() == QTime(0, 0) ? earlier : start;
}

qint64 dayStartSeconds(const QDate &date)
{
    return dayStart(date).toSecsSinceEpoch();
}
