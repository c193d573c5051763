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
 * Reads the days of many people at once, so that a report costs a few statements instead of four
 * for each of its rows.
 *
 * What it returns is what the statements for one person and one day would return. Where it cannot
 * be sure of that, the value is left open, for those statements to read: an error, two rows of
 * which the last counts, a sum that depends on the order of its addends, a column that is not of
 * whole numbers where people and days are told apart. None of that is logged here.
 *
 * Rows are to be asked for in the order of the sheet, day by day. A block of so many people and
 * days is read when its first row is asked for, and held until the same people's next days are
 * read: at most eight days of all people are in memory, or 8,000 rows if these are more.
 */
class DailyAttenAhead
{
public:
    /// `isStopped` is asked before each statement.
    DailyAttenAhead(const QSqlDatabase &database, const DailyAttenOptions &options,
                    const QDate &today, std::function<bool()> isStopped);
    ~DailyAttenAhead();
    Q_DISABLE_COPY_MOVE(DailyAttenAhead)

    /// `uids` in the order of the sheet.
    void setPeople(const QVector<unsigned int> &uids);

    struct Row {
        DailyAttenRow row; ///< incomplete if an error came up right now
        DayValues open;    ///< the values still to be read, which are missing or doubtful in `row`
    };
    /// Returns nothing when stopped. The person must be one of those set, the day not after today.
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
    QVector<qint64> starts; ///< of the days 1 to today, and of tomorrow

    QVector<unsigned int> people; ///< each once
    QHash<qlonglong, int> places; ///< uid -> index in `people`
    int peoplePerBlock = 1;
    int daysPerBlock = 1;
    std::vector<Block> blocks; ///< one for each batch of people
};
