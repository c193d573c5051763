#include "common/zas.h"

#include "support/logcapture.h"
#include "support/testserver.h"

#include <QDateTime>
#include <QTest>
#include <QUrlQuery>

#include <ctime>
#include <limits>

namespace
{

uint at(const char *text)
{
    return static_cast<uint>(QDateTime::fromString(text, "yyyy-MM-dd HH:mm:ss").toSecsSinceEpoch());
}

} // namespace

class TestZasHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void durationTextAndBack_data();
    void durationTextAndBack();
    void notADuration_data();
    void notADuration();
    void pointsInTime();
    void calendar_data();
    void calendar();
    void months();
    void workingDays_data();
    void workingDays();
    void dayNames();
    void roundingSteps();
    void emailAddresses_data();
    void emailAddresses();
    void texts();
    void administrator();
    void helpersThatAskTheDatabase();
};

void TestZasHelpers::initTestCase()
{
    qputenv("TZ", "Europe/Bratislava");
    tzset();
}

void TestZasHelpers::durationTextAndBack_data()
{
    QTest::addColumn<qint64>("seconds");
    for (const qint64 seconds :
         {Q_INT64_C(0), Q_INT64_C(59), Q_INT64_C(-59), Q_INT64_C(-3600), Q_INT64_C(86400),
          Q_INT64_C(360000), Q_INT64_C(-90061), std::numeric_limits<qint64>::max(),
          std::numeric_limits<qint64>::min()})
        QTest::addRow("%lld", static_cast<long long>(seconds)) << seconds;
}

void TestZasHelpers::durationTextAndBack()
{
    QFETCH(qint64, seconds);
    const auto back = ZAS::timeStringToTs(ZAS::tsToTimeString(seconds, 3, false));
    QVERIFY(back);
    QCOMPARE(*back, seconds);
    QCOMPARE(ZAS::timeStringToTs(ZAS::tsToTimeString(seconds, 2, false)).value(),
             seconds - seconds % 60);
}

void TestZasHelpers::notADuration_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"", "7", "07:60", "07:05:60", "07:5", "+07:05", " 07:05", "07:05\n",
                             "--07:05", "7:05:09:01", "2562047788015215:30:08",
                             "99999999999999999999:00", "-2562047788015215:30:09"})
        QTest::newRow(text) << QString(text);
}

void TestZasHelpers::notADuration()
{
    QFETCH(QString, text);
    QVERIFY(!ZAS::timeStringToTs(text));
}

void TestZasHelpers::pointsInTime()
{
    QLocale::setDefault(QLocale::C);
    const uint ts = at("2024-03-31 14:05:09"); // a day of 23 hours
    const QString date = ZAS::tsToDateString(ts);
    QCOMPARE(date, QLocale::system().toString(QDate(2024, 3, 31), QLocale::ShortFormat));
    QCOMPARE(ZAS::tsToDateTimeString(ts), date + " 14:05");
    QCOMPARE(ZAS::tsToTimeString(25509), QString("07:05"));
    QCOMPARE(ZAS::secondsFromTimestamp(ts), 14U * 3600 + 5 * 60 + 9);
    ZAS::timeSecondPrecision = true;
    QVERIFY(ZAS::useSecondPrecision() && ZAS::isTimeSecondPrecision());
    QCOMPARE(ZAS::tsToDateTimeString(ts), date + " 14:05:09");
    QCOMPARE(ZAS::tsToTimeStringLimit(90061), QString("01:01:01"));
    ZAS::timeSecondPrecision = false;
    QCOMPARE(ZAS::getMask4timeValue("7:05", false), QString("[0-9][0-9]:[0-9][0-9]"));
    QCOMPARE(ZAS::getMask4timeValue("-123:05", true),
             QString("[0-9][0-9][0-9]:[0-9][0-9]:[0-9][0-9]"));
}

void TestZasHelpers::calendar_data()
{
    QTest::addColumn<uint>("moment");
    QTest::addColumn<uint>("midnight");
    QTest::addColumn<uint>("next");
    QTest::addColumn<uint>("previous");
    QTest::addColumn<uint>("first");
    QTest::addColumn<uint>("last");
    QTest::addColumn<int>("weekday");
    const auto row = [](const char *moment, const char *midnight, const char *next,
                        const char *previous, const char *first, const char *last, int weekday) {
        QTest::newRow(moment) << at(moment) << at(midnight) << at(next) << at(previous) << at(first)
                              << at(last) << weekday;
    };
    row("2024-03-31 23:59:59", "2024-03-31 00:00:00", "2024-04-01 00:00:00", "2024-03-30 00:00:00",
        "2024-03-01 00:00:00", "2024-03-31 00:00:00", 7);
    row("2024-10-27 00:00:00", "2024-10-27 00:00:00", "2024-10-28 00:00:00", "2024-10-26 00:00:00",
        "2024-10-01 00:00:00", "2024-10-31 00:00:00", 7);
    row("2024-03-01 12:00:00", "2024-03-01 00:00:00", "2024-03-02 00:00:00", "2024-02-29 00:00:00",
        "2024-03-01 00:00:00", "2024-03-31 00:00:00", 5);
    row("2023-12-31 12:00:00", "2023-12-31 00:00:00", "2024-01-01 00:00:00", "2023-12-30 00:00:00",
        "2023-12-01 00:00:00", "2023-12-31 00:00:00", 7);
}

void TestZasHelpers::calendar()
{
    QFETCH(uint, moment);
    QTEST(ZAS::midnightFromTs(moment), "midnight");
    QTEST(static_cast<uint>(ZAS::nextMidnight(moment)), "next");
    QTEST(static_cast<uint>(ZAS::prevMidnight(moment)), "previous");
    QTEST(ZAS::firstDayOfMonth(moment), "first");
    QTEST(ZAS::lastDayOfMonth(moment), "last");
    QTEST(static_cast<int>(ZAS::dayOfWeek(moment)), "weekday");
}

void TestZasHelpers::months()
{
    const uint ts = at("2020-03-31 23:59:59");
    QCOMPARE(ZAS::monthFromTimestamp(ts), 202003U);
    QCOMPARE(ZAS::monthFromDate(QDate(2024, 12, 1)), 202412U);
    QCOMPARE(ZAS::monthStrFromTimestamp(ts), QString("3 / 2020"));
    QCOMPARE(ZAS::currentMidnight(),
             ZAS::midnightFromTs(static_cast<uint>(QDateTime::currentSecsSinceEpoch())));
}

void TestZasHelpers::workingDays_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<int>("firstDay");
    QTest::addColumn<int>("holidays");
    QTest::addColumn<int>("working");
    QTest::newRow("31 days from Monday") << 31 << 1 << 0 << 23;
    QTest::newRow("30 days from Saturday") << 30 << 6 << 1 << 19;
    QTest::newRow("28 days from Sunday") << 28 << 7 << 2 << 18;
    QTest::newRow("no days") << 0 << 1 << 3 << -3;
}

void TestZasHelpers::workingDays()
{
    QFETCH(int, days);
    QFETCH(int, firstDay);
    QFETCH(int, holidays);
    const auto byte = [](int value) {
        return static_cast<unsigned char>(value);
    };
    QTEST(ZAS::workingDaysInMonth(byte(days), byte(firstDay), byte(holidays)), "working");
    QCOMPARE(ZAS::workingDaysInWeek(0xE0), byte(5));
    QCOMPARE(ZAS::workingDaysInWeek(0xFF), byte(0));
}

void TestZasHelpers::dayNames()
{
    QStringList names;
    for (const int day : {1, 2, 3, 4, 5, 6, 7, 0, 8})
        names << ZAS::getDayName(static_cast<unsigned char>(day), day % 2 == 0);
    QCOMPARE(names,
             QStringList({"Pondelok", "UT", "Streda", "ŠT", "Piatok", "SO", "Nedeľa", "NE", "NE"}));
}

void TestZasHelpers::roundingSteps()
{
    for (const int index : {0, 1, 2, 3, 4, 5})
        QCOMPARE(ZAS::roundValToIndex(ZAS::roundIndexToVal(index)), index);
    QCOMPARE(ZAS::roundValToIndex(120), 0);
    QCOMPARE(ZAS::roundIndexToVal(6) + ZAS::roundIndexToVal(-1), 0);
    QCOMPARE(ZAS::roundValToString(900) + ZAS::roundValToString(61),
             QString("15 minútbez zaokrúhľovania"));
    const QVector<int> intervals{60, 300, 900, 0, 61, 899, 901, 65535};
    const QVector<int> indexes{1, 2, 3, 0, 0, 0, 3, 3};
    for (int i = 0; i < intervals.size(); ++i)
        QCOMPARE(ZAS::dayIssuesIndexFromInterval(static_cast<ushort>(intervals.at(i))),
                 indexes.at(i));
    QCOMPARE(int(ZAS::dayIssuesIntervalFromIndex(3)), 900);
    QCOMPARE(int(ZAS::dayIssuesIntervalFromIndex(4)), 0);
}

void TestZasHelpers::emailAddresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("valid");
    QTest::newRow("plain") << "jan.novak@firma.sk" << true;
    QTest::newRow("mixed case") << "Jan+Mzdy%1@Firma-SK.Travel" << true;
    QTest::newRow("one letter at the end") << "jan@firma.s" << false;
    QTest::newRow("sixteen letters at the end") << "jan@firma.abcdefghijklmnop" << false;
    QTest::newRow("more around it") << "Ján <jan@firma.sk>" << false;
    QTest::newRow("blank around it") << " jan@firma.sk" << false;
    QTest::newRow("no domain") << "jan@" << false;
}

void TestZasHelpers::emailAddresses()
{
    QFETCH(QString, address);
    QTEST(ZAS::validEmail(address), "valid");
}

void TestZasHelpers::texts()
{
    QCOMPARE(ZAS::firstInterruption("[D 1.5-2x][L 0.25]"), QString("D 1.5-2x"));
    QCOMPARE(ZAS::shortcutFromInters("[SC 2 1.5][L 0.25]"), QString("SC 2"));
    QVERIFY(ZAS::firstInterruption("D 1.5]").isEmpty() && ZAS::shortcutFromInters("").isEmpty());
    QCOMPARE(ZAS::shiftKeyFromNum(-1, 31, 2), QString("-1-31-2"));
    QCOMPARE(ZAS::makeShiftString(3, 1, true, true), QString("(3/1*)"));
    QCOMPARE(ZAS::makeShiftString(3, 0, false, false), QString("3"));
    QVERIFY(ZAS::checkDuplicateEntry("Duplicate entry 'a' for key 'PRIMARY'"));
    QVERIFY(!ZAS::checkDuplicateEntry("Table 'a' doesn't exist"));
    QCOMPARE(ZAS::getRandomString(5, "x"), QString("xxxxx"));
    QVERIFY(ZAS::getRandomString(5, "").isEmpty() && ZAS::getRandomString(-1, "x").isEmpty());
    QCOMPARE(ZAS::getProgramName(), QString("ZAS"));
    ZAS::thinZAS = true;
    QCOMPARE(ZAS::getProgramName(), QString("T-ZAS"));
    ZAS::thinZAS = false;
}

void TestZasHelpers::administrator()
{
    ZAS::LoginInfo admin;
    admin.name = "Ján & syn";
    admin.login = "jan";
    admin.uids = "2,40";
    admin.closedScreens.insert(static_cast<int>(ZAS::GUIStates::Plan));
    QCOMPARE(admin.getName(), QString("Ján & syn (jan)"));
    QVERIFY(admin.checkPersonAccess(40) && !admin.checkPersonAccess(4));
    QVERIFY(!admin.closurePerms());
    ZAS::curAdmin = admin;
    ZAS::license = {"Firma s.r.o.", {"PLAN"}};
    QVERIFY(!ZAS::guiAccess(ZAS::GUIStates::Plan));
    QVERIFY(ZAS::isModule("PLAN") && !ZAS::isModule("MZDY"));
    const QUrlQuery query(ZAS::getSupportChatUrl());
    QCOMPARE(query.queryItemValue("name", QUrl::FullyDecoded), admin.name);
    QCOMPARE(query.queryItemValue("company", QUrl::FullyDecoded), QString("Firma s.r.o."));
    ZAS::curAdmin.login = "system";
    QVERIFY(ZAS::guiAccess(ZAS::GUIStates::Plan) && ZAS::curAdmin.closurePerms() &&
            ZAS::curAdmin.checkPersonAccess(4));
}

void TestZasHelpers::helpersThatAskTheDatabase()
{
    LogCapture log;
    const QDate today = QDate::currentDate();
    const QDate thisMonth(today.year(), today.month(), 1);
    QCOMPARE(ZAS::findFirstMonth(), thisMonth); // no default connection at all
    {
        TestDatabase schema(TestDatabase::Tables::Schema);
        const QString usual = QLatin1String(QSqlDatabase::defaultConnection);
        QVERIFY(TestServer::addConnection(usual, schema.name()).open());
        QCOMPARE(ZAS::findFirstMonth(), thisMonth);
        schema.exec(QString("INSERT INTO atten (uid, date, dom) VALUES (1, 0, 1), (1, %1, 15)")
                        .arg(at("2019-05-15 00:00:00")));
        QCOMPARE(ZAS::findFirstMonth(), QDate(2019, 5, 1));

        schema.exec("INSERT INTO people (uid, name, surname, status) VALUES (1, 'A', 'A', 1), (2, "
                    "'B', 'B', 0), (3, 'C', 'C', 1)");
        schema.exec("INSERT INTO admins_people VALUES (5, 2), (5, 7), (6, 1)");
        const auto uidsOf = [](uint admin) {
            ZAS::curAdminID = admin;
            ZAS::loadCurrentAdminPeopleUids();
            return ZAS::curAdmin.uids;
        };
        QCOMPARE(uidsOf(1), QString("1,3"));
        QCOMPARE(uidsOf(5), QString("2,7"));
        schema.exec("DROP TABLE admins_people");
        QCOMPARE(uidsOf(5), QString());
        QCOMPARE(log.countContaining("Cannot load from admin_people, ERROR: "), 1);
        QSqlDatabase::database(usual).close();
        QSqlDatabase::removeDatabase(usual);
    }
}

QTEST_GUILESS_MAIN(TestZasHelpers)
#include "tst_zashelpers.moc"
