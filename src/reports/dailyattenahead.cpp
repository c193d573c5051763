#include "reports/dailyattenahead.h"

#include "common/freshquery.h"
#include "common/period.h"

#include <QSqlField>
#include <QSqlRecord>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace
{

// With these limits, a statement usually returns at most ten thousand records (a few megabytes).
constexpr int peoplePerStatement = 500; ///< MariaDB turns IN lists of 1,000 or more into subqueries
constexpr int cellsAhead = 8000;        ///< cells in memory, for all people together
/// A block may have this many days even if this takes more than `cellsAhead` cells: for the server,
/// finding a person costs as much as reading a few days.
constexpr int daysAhead = 16;

// The columns of every statement of forMany(): the uid, the record's moment, then the values.
enum Column { Uid, Moment, FirstValue };

int quotientRoundedUp(int count, int divisor)
{
    return (count + divisor - 1) / divisor;
}

/// Returns whether the column holds integers that the server compares as C++ does.
bool isWholeNumber(const QSqlField &field)
{
    constexpr int yearType = 13; // for the server, YEAR 5 equals 2005
    switch (static_cast<int>(field.type())) {
    case QMetaType::Char:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return field.typeID() != yearType;
    default:
        return false;
    }
}

/// Returns whether `seconds` is whole and so small that the sum of four million such numbers is
/// exact.
bool addsExactly(double seconds)
{
    constexpr double limit = 2147483648.0; // 2^31; doubles are exact up to 2^53
    return std::abs(seconds) <= limit && std::trunc(seconds) == seconds;
}

/// Adds `seconds` to `total`. Returns false if another order of the addends might change the total.
bool add(double &total, double seconds, bool isFirst)
{
    const bool exact = isFirst || (addsExactly(total) && addsExactly(seconds));
    total += seconds;
    return exact;
}

} // namespace

/// A row that is being read.
struct DailyAttenAhead::Cell {
    DailyAttenRow row;
    DayValues seen;             ///< those of Attendance and Overtime that had a record
    DayValues doubtful;         ///< values that may depend on the order of the records
    unsigned int corrected = 0; ///< one bit per correction that had a record

    void take(DayValue value, const QSqlQuery &query)
    {
        switch (value) {
        case DayValue::Attendance:
            takeAttendance(query);
            break;
        case DayValue::Overtime:
            takeOvertime(query);
            break;
        case DayValue::Corrections:
            takeCorrection(query);
            break;
        case DayValue::Interruptions:
            takeInterruption(query);
            break;
        }
    }

private:
    void takeAttendance(const QSqlQuery &query)
    {
        takeOnly(DayValue::Attendance);
        row.workedSeconds = query.value(FirstValue + 1).toDouble();
        row.unworkedSeconds = query.value(FirstValue).toDouble() - row.workedSeconds;
    }
    void takeOvertime(const QSqlQuery &query)
    {
        takeOnly(DayValue::Overtime);
        row.overtimeSeconds = query.value(FirstValue).toDouble();
    }
    void takeCorrection(const QSqlQuery &query)
    {
        const Correction *correction = correctionOf(query.value(FirstValue).toInt());
        if (!correction)
            return;
        const unsigned int bit = 1U << (correction - corrections);
        const double seconds = query.value(FirstValue + 1).toDouble();
        if (!add(row.*correction->seconds, seconds, (corrected & bit) == 0))
            doubtful |= DayValue::Corrections;
        corrected |= bit;
    }
    void takeInterruption(const QSqlQuery &query)
    {
        InterruptionTotal &total = row.interruptions[query.value(FirstValue + 2).toString()];
        const double seconds = query.value(FirstValue + 1).toDouble();
        if (!add(total.seconds, seconds, total.count == 0))
            doubtful |= DayValue::Interruptions;
        ++total.count;
    }
    /// Marks `value` as doubtful if it already had a record. The last record counts, but the
    /// statement for one day may return the records in a different order.
    void takeOnly(DayValue value)
    {
        if (seen.testFlag(value))
            doubtful |= value;
        seen |= value;
    }
};

struct DailyAttenAhead::Block {
    int firstPerson = 0;
    int people = 0;
    int firstDay = 0; ///< 0 if nothing has been read
    int days = 0;
    DayValues open;          ///< values left open in every cell
    bool failed = false;     ///< true if a statement failed
    std::vector<Cell> cells; ///< the days of the first person, then those of the next
};

DailyAttenAhead::DailyAttenAhead(const QSqlDatabase &db, const DailyAttenOptions &reportOptions,
                                 const QDate &today, std::function<bool()> stopCheck)
    : database(db)
    , options(reportOptions)
    , statements(reportOptions)
    , isStopped(std::move(stopCheck))
{
    for (int day = 0; day <= today.day(); ++day)
        starts.append(dayStartSeconds(firstOfMonth(today).addDays(day)));
}

DailyAttenAhead::~DailyAttenAhead() = default;

void DailyAttenAhead::setPeople(const QVector<unsigned int> &uids)
{
    // The server reads people fastest in the order of its index.
    people = uids;
    std::sort(people.begin(), people.end());
    people.erase(std::unique(people.begin(), people.end()), people.end());
    places.clear();
    places.reserve(people.size());
    for (int place = 0; place < people.size(); ++place)
        places.insert(people.at(place), place);
    const int count = std::max(1, people.size());
    const int days = starts.size() - 1;
    // Make all blocks about the same size.
    const int batches = quotientRoundedUp(count, peoplePerStatement);
    peoplePerBlock = quotientRoundedUp(count, batches);
    const int daysAtMost = std::min(days, std::max(daysAhead, cellsAhead / count));
    daysPerBlock = quotientRoundedUp(days, quotientRoundedUp(days, daysAtMost));
    blocks.clear();
    blocks.resize(std::size_t(batches));
}

std::optional<DailyAttenAhead::Row> DailyAttenAhead::row(unsigned int uid, int dayOfMonth)
{
    const int place = places.value(uid);
    const int batch = place / peoplePerBlock;
    const int firstDay = (dayOfMonth - 1) / daysPerBlock * daysPerBlock + 1;
    Block &block = blocks[std::size_t(batch)];
    const bool isNew = block.firstDay != firstDay;
    if (isNew && !load(block, batch, firstDay))
        return std::nullopt;
    const int index = (place - block.firstPerson) * block.days + dayOfMonth - firstDay;
    const Cell &cell = block.cells[std::size_t(index)];
    Row result{cell.row, block.open | cell.doubtful};
    result.row.complete = !(isNew && block.failed);
    return result;
}

/// Reads the block of `batch` that begins at `firstDay`. If the run is stopped, empties the block
/// and returns false.
bool DailyAttenAhead::load(Block &block, int batch, int firstDay)
{
    block = Block();
    block.firstPerson = batch * peoplePerBlock;
    block.people = std::min(peoplePerBlock, people.size() - block.firstPerson);
    block.days = std::min(daysPerBlock, starts.size() - firstDay);
    block.firstDay = firstDay;
    block.cells.resize(std::size_t(block.people) * std::size_t(block.days));
    for (const DayValue value : dayValues) {
        if (!statements.values().testFlag(value))
            continue;
        if (isStopped()) {
            block = Block();
            return false;
        }
        if (!read(value, block))
            block.open |= value;
    }
    return true;
}

/// Reads one value of all cells. Returns false if the value must be left open in all of them.
bool DailyAttenAhead::read(DayValue value, Block &block)
{
    const auto first = starts.cbegin() + block.firstDay - 1;
    const auto end = first + block.days;
    // If the time zone skipped a whole day, leave the value to the statements for one day.
    if (std::adjacent_find(first, end + 1, std::greater_equal<>()) != end + 1)
        return false;
    QSqlQuery query = freshQuery(database);
    const auto uids = people.mid(block.firstPerson, block.people);
    // If the connection is lost meanwhile, exec() may return true without a result set.
    if (!query.exec(statements.forMany(value, uids, {*first, *end})) || !query.isSelect()) {
        block.failed = true;
        return false;
    }
    const QSqlRecord record = query.record();
    if (!isWholeNumber(record.field(Uid)) || !isWholeNumber(record.field(Moment)))
        return false;
    const bool onlyFirstMoments = value == DayValue::Overtime && !options.advancedOvertime;
    while (query.next()) {
        Cell *cell = cellOf(query, block);
        if (!cell)
            return false;
        if (!onlyFirstMoments || isFirstMoment(query))
            cell->take(value, query);
    }
    return true;
}

/// Returns the cell of the query's current record, or null if the record is outside of the block.
DailyAttenAhead::Cell *DailyAttenAhead::cellOf(const QSqlQuery &query, Block &block) const
{
    const int person = places.value(query.value(Uid).toLongLong(), -1) - block.firstPerson;
    const auto firstDay = starts.cbegin() + block.firstDay - 1;
    const auto after =
        std::upper_bound(firstDay, firstDay + block.days + 1, query.value(Moment).toLongLong());
    const int day = int(std::distance(firstDay, after)) - 1;
    if (person < 0 || person >= block.people || day < 0 || day >= block.days)
        return nullptr;
    return &block.cells[std::size_t(person) * std::size_t(block.days) + std::size_t(day)];
}

bool DailyAttenAhead::isFirstMoment(const QSqlQuery &query) const
{
    return std::binary_search(starts.cbegin(), starts.cend(), query.value(Moment).toLongLong());
}
