#include "support/benchschema.h"

namespace
{

constexpr int reportYear = 2026;
constexpr int reportMonth = 11; // has thirty days

// Twenty groups, twenty departments, fifteen branches, and interruptions with the ids 2 to 15.
const QStringList catalogue{
    QStringLiteral("INSERT INTO `groups` (gid, name) SELECT seq, CONCAT('Skupina ', seq) "
                   "FROM seq_1_to_20"),
    QStringLiteral("INSERT INTO departs (did, name) SELECT seq, CONCAT('Zaradenie číslo ', seq) "
                   "FROM seq_1_to_20"),
    QStringLiteral("INSERT INTO branches (bid, name) SELECT seq, CONCAT('Stredisko ', seq) "
                   "FROM seq_1_to_15"),
    QStringLiteral("INSERT INTO inters (iid, shortcut, name) SELECT seq, CHAR(63 + seq), "
                   "CONCAT('Prerušenie ', seq) FROM seq_2_to_15"),
    QStringLiteral("INSERT INTO vars (name, value) VALUES ('dattenInters', '1'), "
                   "('globalEmail', 'reports@example.com')"),
};

const QStringList peopleStatements{
    QStringLiteral("INSERT INTO people (uid, pid, pamId, name, surname, title, gid, did, bid) "
                   "SELECT seq, seq + 1000, CONCAT('P', seq), ELT(1 + seq % 5, 'Ján', 'Mária', "
                   "'Peter', 'Zuzana', 'Ľuboš'), CONCAT('Priezviskový', seq * 7919 % 10007), "
                   "IF(seq % 4 = 0, 'Ing.', NULL), 1 + seq % 20, 1 + seq % 20, 1 + seq % 15 "
                   "FROM seq_1_to_%1"),
    QStringLiteral("INSERT INTO brape (uid, bid, since) SELECT seq, 1 + seq % 15, 1700000000 "
                   "FROM seq_1_to_%1"),
    QStringLiteral("INSERT INTO atten_month (uid, month, fond, work, totalSaldo, holidayFond, "
                   "bonus, day6sum, day7sum, night, vouchers) SELECT seq, 202611, 576000, 500000 + "
                   "seq * 601 % 100000, seq * 307 % 40000, 28800, seq * 11 % 7200, seq * 13 % "
                   "28800, seq * 17 % 14400, seq * 19 % 36000, seq % 23 FROM seq_1_to_%1"),
};

// %1 is the number of people, %2 the first second of the day, %3 the day of the month.
const QStringList dayStatements{
    QStringLiteral(
        "INSERT INTO atten (uid, date, dom, shift, fond, work, diff, saldo_p, ok) "
        "SELECT seq, %2, %3, 1 + seq % 3, 28800, 24000 + 60 * ((seq * 7919 + %3 * 104729) "
        "% 140), 60 * (seq % 90), 60 * (seq % 90), 1 FROM seq_1_to_%1"),
    QStringLiteral("INSERT INTO atten_data (uid, iid, `from`, duration) "
                   "SELECT seq, 1, %2 + 25200, 28800 FROM seq_1_to_%1"),
    QStringLiteral("INSERT INTO atten_data (uid, iid, `from`, duration) SELECT seq, 1000 + (seq + "
                   "%3) % 4, %2 + 30000, 60 * ((seq * 31 + %3) % 50) FROM seq_1_to_%1"),
    QStringLiteral("INSERT INTO atten_data (uid, iid, `from`, duration) SELECT seq, 2 + (seq + %3) "
                   "% 14, %2 + 40000, 60 * ((seq * 37 + %3) % 200) FROM seq_1_to_%1 "
                   "WHERE (seq + %3) % 3 <> 0"),
};

} // namespace

BenchSchema::BenchSchema(int peopleCount, int days, Past past)
    : database(TestDatabase::Tables::Schema)
    , people(peopleCount)
{
    for (const QString &statement : catalogue)
        database.exec(statement);
    for (const QString &statement : peopleStatements)
        database.exec(statement.arg(people));
    const QDate first(reportYear, reportMonth, 1);
    if (past == Past::OneMonth) {
        for (QDate date = first.addMonths(-1); date < first; date = date.addDays(1))
            addDay(date);
    }
    for (int day = 0; day < days; ++day)
        addDay(first.addDays(day));
    database.exec(QStringLiteral("ANALYZE TABLE people, atten, atten_data, atten_month, brape"));
}

void BenchSchema::addDay(const QDate &date)
{
    const QString start = QString::number(date.startOfDay().toSecsSinceEpoch());
    for (QString statement : dayStatements) {
        statement.replace(QStringLiteral("%1"), QString::number(people));
        statement.replace(QStringLiteral("%2"), start);
        database.exec(statement.replace(QStringLiteral("%3"), QString::number(date.day())));
    }
}

QDateTime BenchSchema::moment(int days)
{
    return QDateTime(QDate(reportYear, reportMonth, days), QTime(12, 0));
}
