#pragma once

#include "reports/dailyattenrow.h"
#include "reports/dailyattenstatements.h"

#include <QDate>
#include <QHash>
#include <QSqlDatabase>
#include <QVector>

#include <functional>
#include <optional>
#include <vector>

class QSqlQuery;

/**
 * Reads the days of many people at once, so that a report runs a few statements instead of up to
 * four for each row.
 *
 * Returns exactly the values that the statements for one person and one day would return. A value
 * that might differ is left open, and the caller must read it with those statements. A value is
 * left open if a statement failed, if several records match although only the last one counts, if a
 * sum may depend on the order of its addends, if the columns that identify people and days are not
 * integers, or if the time zone skipped one of the days. Logs nothing.
 *
 * Call row() in the order of the sheet, day by day. A block is a few days of a batch of people. The
 * first call for a row of a block reads the block, which stays in memory until other days of the
 * same people are read. At most sixteen days of all people are in memory, or 8,000 rows if that is
 * more.
 */
class DailyAttenAhead
{
public:
    /// Calls `stopCheck` before each statement. Stops reading if `stopCheck` returns true.
    DailyAttenAhead(const QSqlDatabase &db, const DailyAttenOptions &reportOptions,
                    const QDate &today, std::function<bool()> stopCheck);
    ~DailyAttenAhead();
    Q_DISABLE_COPY_MOVE(DailyAttenAhead)

    /// Sets the people of the report, in any order.
    void setPeople(const QVector<unsigned int> &uids);

    struct Row {
        DailyAttenRow row; ///< `complete` is false if a statement of this call failed
        DayValues open;    ///< values that the caller must still read
    };
    /// Returns nothing if `stopCheck` returned true before the row was read. `uid` must have been
    /// passed to setPeople(), and the day must not be after today.
    std::optional<Row> row(unsigned int uid, int dayOfMonth);

private:
    struct Cell;
    struct Block;

    bool load(Block &block, int batch, int firstDay);
    bool read(DayValue value, Block &block);
    Cell *cellOf(const QSqlQuery &query, Block &block) const;
    bool isFirstMoment(const QSqlQuery &query) const;

    QSqlDatabase database;
    DailyAttenOptions options;
    DailyAttenStatements statements;
    std::function<bool()> isStopped;
    QVector<qint64> starts; ///< when each day from the 1st to tomorrow begins, in Unix seconds

    QVector<unsigned int> people; ///< sorted, without duplicates
    QHash<qlonglong, int> places; ///< uid -> index in `people`
    int peoplePerBlock = 1;
    int daysPerBlock = 1;
    std::vector<Block> blocks; ///< one per batch of `peoplePerBlock` people
};
