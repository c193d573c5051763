#include "reports/dailyattendata.h"

#include "support/reportbench.h"

#include <cmath>
#include <random>

namespace
{

/// A company from a random seed, with everything that a customer's tables may hold, valid or not.
/// The types of its keys are random too. If they are given, it has two people, whose uids are one
/// and the same to the type YEAR.
class Company
{
public:
    Company(unsigned seed, const QString &typeOfUids, const QString &typeOfMoments)
        : uidType(typeOfUids)
        , momentType(typeOfMoments)
        , random(seed)
    {
        options.advancedOvertime = one(2);
        options.interruptions = !one(4);
        const QString day = pick({"2026-03-31", "2026-03-29", "2026-10-31", "2026-10-25",
                                  "2024-02-29", "2026-01-01", "2026-07-31", "2026-11-03"});
        today = QDate::fromString(day, Qt::ISODate);
        isLarge = one(20);
        const unsigned people = isLarge ? 700 : 1 + below(12);
        for (unsigned i = 0; i < people; ++i)
            uids.append(isLarge ? QString::number(i * 3) : pick(oddUids));
        if (!uidType.isEmpty())
            uids = QStringList{"5", "2005"};
        uids.removeDuplicates();
    }

    QString sql()
    {
        QStringList statements{"SET sql_mode = 'NO_AUTO_VALUE_ON_ZERO'"};
        for (const QString &uid : qAsConst(uids)) {
            statements << "INSERT INTO people (uid, pid, name, surname) VALUES "
                          "(%1, %1 % 1000, 'Ján', 'P%1')";
            statements.last().replace("%1", uid);
            for (int day = 1; day <= today.day(); ++day)
                addRows(uid, day);
        }
        statements << tables()
                   << "ALTER TABLE inters DROP PRIMARY KEY, MODIFY shortcut VARCHAR(9) NULL"
                   << "INSERT INTO inters VALUES (2, 'D', 'Dovolenka'), (3, 'L', 'Lekár'), "
                      "(4, 'd', 'd'), (5, NULL, 'x'), (6, 'D', 'Ešte jedna')";
        if (one(3))
            statements << "INSERT INTO inters VALUES (3, 'LL', 'Lekár')";
        if (!attendance.isEmpty())
            statements << "INSERT IGNORE INTO atten VALUES " + attendance.join(", ");
        if (!records.isEmpty())
            statements << "INSERT IGNORE INTO atten_data VALUES " + records.join(", ");
        if (one(6))
            statements << pick(missing);
        return statements.join(";\n");
    }

    DailyAttenOptions options;
    QDate today;
    bool isLarge; ///< too large for every row to be read for itself

private:
    unsigned below(unsigned limit) { return unsigned(random()) % limit; }
    bool one(unsigned of) { return below(of) == 0; }
    QString pick(const QStringList &from) { return from.at(int(below(unsigned(from.size())))); }
    /// Returns `usual` in most companies.
    QString type(const QString &usual, const QStringList &others)
    {
        return one(8) ? pick(others) : usual;
    }
    QString numberType()
    {
        return type("DOUBLE NULL", {"INT", "TEXT", "DECIMAL(14,3)", "FLOAT NULL", "BIGINT"});
    }
    QString keyType(const QString &given)
    {
        if (!given.isEmpty())
            return given;
        return type("INT UNSIGNED NULL",
                    {"INT NULL", "BIGINT", "BIGINT UNSIGNED", "INT(9) ZEROFILL", "VARCHAR(20)",
                     "DECIMAL(20,2)", "DOUBLE NULL", "VARBINARY(20)", "DATETIME NULL"});
    }
    QStringList tables()
    {
        const auto index = pick({"", ", KEY (uid)", ", KEY (date)", ", KEY (uid, date)"});
        const QString end = index + ") ENGINE=" + pick({"InnoDB", "MyISAM", "Aria"});
        QString attenTable = "CREATE TABLE atten (uid %1, date %2, dom INT, shift INT, fond %3, "
                             "work %3, diff %3, expFund INT, saldo_p %3, ok %4";
        QString recordTable = "CREATE TABLE atten_data (uid %1, iid %2, `from` %3, duration %4, "
                              "del %5";
        return {"DROP TABLE atten, atten_data",
                attenTable.arg(keyType(uidType), keyType(momentType), numberType(),
                               type("TINYINT NULL", {"VARCHAR(9)"})) +
                    end,
                recordTable.arg(keyType(uidType), type("INT NULL", {"VARCHAR(9)", "DECIMAL(9,1)"}),
                                keyType(momentType), numberType(),
                                type("TINYINT NULL", {"VARCHAR(9)"})) +
                    QString(end).replace("date", "`from`")};
    }
    /// What a person did on a day: mostly one row of attendance, and a few records.
    void addRows(const QString &uid, int day)
    {
        for (unsigned rows = one(6) ? below(3) : 1; rows > 0; --rows) {
            const QString ok = one(9) ? pick({"0", "NULL", "-1", "'x'"}) : "1";
            attendance << QString("(%1, %2, %3, 2, %4, %5, %6, 0, %7, %8)")
                              .arg(stray(uid), moment(day, 4), QString::number(day))
                              .arg(seconds(), seconds(), seconds(), seconds(), ok);
        }
        for (unsigned rows = below(5); rows > 0; --rows) {
            const QString del = one(9) ? pick({"1", "NULL", "'x'"}) : "0";
            records << QString("(%1, %2, %3, %4, %5)")
                           .arg(stray(uid), pick(kinds), moment(day, 2), seconds(), del);
        }
    }
    QString stray(const QString &uid) { return one(60) ? pick(oddUids) : uid; }
    /// A day's start, or in one of `often` cases another moment of it or beside it.
    QString moment(int day, unsigned often)
    {
        const QDate date(today.year(), today.month(), day);
        const qint64 start = date.startOfDay().toSecsSinceEpoch();
        if (!one(often))
            return QString::number(start);
        const qint64 end = date.addDays(1).startOfDay().toSecsSinceEpoch();
        const QString inDay = QString::number(start + qint64(below(82800)));
        return pick({inDay, inDay, inDay, QString::number(start - 1), QString::number(end - 1),
                     QString::number(end - 1) + ".5", QString::number(end),
                     QString::number(start + 1), inDay + ".5", "NULL", "0", "-86400", "4294967295",
                     "'" + inDay + "x'"});
    }
    QString seconds()
    {
        if (!one(5))
            return QString::number(below(40000));
        return pick({"NULL", "-1", "59", "60", "0.1", "0.2", "0.7", "1e16", "1e300", "-1e300",
                     "-9e18", "'sedem'", "' 7 '", "'12abc'", "''", "'nan'", "3600.25",
                     "9007199254740993", "-3600"});
    }

    const QStringList oddUids =
        QString("0 1 2 5 7 26 255 2005 2147483647 2147483648 4294967295").split(' ');
    const QStringList kinds =
        QString("2 3 3 3 4 5 6 7 1 999 1000 1000 1001 1002 1003 1003 1004 NULL "
                "-3 1000.5 '1001x'")
            .split(' ');
    const QStringList missing =
        QString("ALTER TABLE atten DROP ok|ALTER TABLE atten DROP expFund|"
                "ALTER TABLE inters DROP name|ALTER TABLE atten_data DROP del|"
                "ALTER TABLE inters ADD uid INT|DROP TABLE inters|DROP TABLE atten")
            .split('|');

    const QString uidType;    ///< of the keys; random if empty
    const QString momentType; ///< likewise
    std::mt19937 random;
    QStringList uids;
    QStringList attendance, records; ///< rows to insert
};

bool isSame(double one, double other)
{
    return one == other || (std::isnan(one) && std::isnan(other));
}

/// Compares what is read ahead; a new field changes the size.
bool isSame(const DailyAttenRow &one, const DailyAttenRow &other)
{
    static_assert(sizeof(DailyAttenRow) == 88);
    bool same = one.complete == other.complete && isSame(one.workedSeconds, other.workedSeconds) &&
                isSame(one.unworkedSeconds, other.unworkedSeconds) &&
                isSame(one.overtimeSeconds, other.overtimeSeconds) &&
                one.interruptions.keys() == other.interruptions.keys();
    for (const Correction &correction : corrections)
        same = same && isSame(one.*correction.seconds, other.*correction.seconds);
    for (const QString &key : one.interruptions.keys())
        same = same && one.interruptions[key].count == other.interruptions[key].count &&
               isSame(one.interruptions[key].seconds, other.interruptions[key].seconds);
    return same;
}

} // namespace

/// What the daily report reads ahead is what the statements for one person and one day return.
class TestReadAhead : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void sameBothWays_data()
    {
        const int count = qEnvironmentVariable("AUTOREPORT_SEEDS", "25").toInt();
        const unsigned first = qEnvironmentVariable("AUTOREPORT_FIRST_SEED", "1").toUInt();
        for (unsigned seed = first; seed < first + unsigned(count); ++seed)
            addRow(qPrintable(QString::number(seed)), seed, QString(), QString());
        addRow("for the server, uid 5 is 2005", 1U, QString("YEAR"), QString("INT UNSIGNED"));
        addRow("half a second before midnight", 1U, QString("INT UNSIGNED"), QString("DOUBLE"));
    }

    void sameBothWays()
    {
        const auto [seed, uids, moments] = fetch<unsigned, QString, QString>();
        Company company(seed, uids, moments);
        bench->schema.exec(company.sql());
        DailyAttenData data(bench->database, company.options, company.today, [] { return false; });
        QVERIFY(data.loadPeople());
        const DailyAttenReader reader(bench->database, company.options);
        const DayValues values = DailyAttenStatements(company.options).values();
        QStringList log, logByOne;
        const int step = company.isLarge ? 37 : 1;
        int row = 0;
        for (int day = 1; day <= company.today.day(); ++day) {
            for (const DailyAttenPerson &person : data.people()) {
                const auto ahead = logged(log, [&] { return data.row(person, day); });
                if (row++ % step != 0)
                    continue;
                const QDate date(company.today.year(), company.today.month(), day);
                const auto byOne = logged(logByOne, [&] {
                    DailyAttenRow read;
                    reader.read(values, person.uid, DaySpan::of(date), read);
                    return read;
                });
                QVERIFY2(isSame(ahead, byOne),
                         qPrintable(QString("uid %1, day %2").arg(person.uid).arg(day)));
                if (!company.isLarge)
                    QCOMPARE(log, logByOne);
            }
        }
    }

    void statements_data()
    {
        constexpr int ahead = 2 * 2 * 4; // batches of people, spans of days, values
        addRow("ordinary days", "DO 0", ahead);
        addRow("a second row of attendance",
               "INSERT INTO atten (uid, date, dom, diff) "
               "SELECT uid, date + 7, dom, 1 FROM atten LIMIT 1",
               ahead + 1);
        addRow("fractions", "UPDATE atten_data SET duration = 0.1 WHERE uid = 3", ahead + 30);
        addRow("no column", "ALTER TABLE atten DROP ok", ahead + 600 * 30);
    }

    /// The number of statements if nothing is unusual, and how many rows are read one by one
    /// otherwise.
    void statements()
    {
        const auto [statement, expected] = fetch<QString, int>();
        const QDate today(2026, 11, 30);
        bench->schema.exec(R"(
            INSERT INTO people (uid, name, surname) SELECT seq, '', '' FROM seq_1_to_600;
            INSERT INTO atten (uid, date, dom, work, diff, ok)
                SELECT uid, UNIX_TIMESTAMP('2026-11-01') + seq * 86400, seq, 28800, 60, 1
                FROM people JOIN seq_0_to_29;
            INSERT INTO inters VALUES (3, 'D', 'Dovolenka');
            INSERT INTO atten_data (uid, iid, `from`, duration)
                SELECT uid, iid, date + 7200, 60 FROM atten JOIN
                (SELECT 3 iid UNION ALL SELECT 3 UNION ALL SELECT 1000) kinds)");
        bench->schema.exec(statement);
        DailyAttenOptions options;
        options.interruptions = true;
        DailyAttenData data(bench->database, options, today, [] { return false; });
        QVERIFY(data.loadPeople());
        bench->database.exec("SET sql_select_limit = 1"); // of which the program cannot know
        const int before = selects();
        for (int day = 1; day <= today.day(); ++day) {
            for (const DailyAttenPerson &person : data.people())
                data.row(person, day);
        }
        QCOMPARE(selects() - before, expected);
    }

private:
    /// Adds the lines that `work` logs to `lines`.
    template <typename Work>
    DailyAttenRow logged(QStringList &lines, const Work &work) const
    {
        const int before = bench->log.texts().size();
        const DailyAttenRow row = work();
        lines += bench->log.texts().mid(before);
        return row;
    }

    /// Returns how many SELECT statements this connection has sent.
    int selects() const
    {
        QSqlQuery query = bench->database.exec("SHOW SESSION STATUS LIKE 'Com_select'");
        query.next();
        return query.value(1).toInt();
    }
};

QTEST_GUILESS_MAIN(TestReadAhead)
#include "tst_readahead.moc"
