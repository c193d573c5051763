// Compares the reports with a client that only executes their statements, and with a Python
// program. Also measures the reports' peak memory, and how their time grows with the number of
// people.

#include "support/bareclient.h"
#include "support/benchschema.h"
#include "support/checkoutput.h"
#include "support/measure.h"
#include "support/peerreport.h"
#include "support/tablerow.h"

#include "reports/dailyattenreport.h"
#include "reports/monthlyattenreport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <ctime>
#include <memory>
#include <vector>

namespace
{

const QString daily = QStringLiteral("daily");
const QString monthly = QStringLiteral("monthly");

struct Size {
    int people;
    int days;
};

/// Makes reports and prints the figures. Arguments: "daily" or "monthly", the schema, the number of
/// days, and how many times to make the report.
void runReport(const QStringList &arguments)
{
    const QString connectionName = QStringLiteral("report");
    {
        QSqlDatabase database = TestServer::addConnection(connectionName, arguments.at(1));
        Bench::require(database.open(), QStringLiteral("no connection"));
        Bench::failOnWarnings();
        const QStringList recipients{QStringLiteral("office@example.com")};
        const QDateTime moment = BenchSchema::moment(arguments.at(2).toInt());
        DailyAttenReport dailyReport(database, nullptr);
        MonthlyAttenReport monthlyReport(database, nullptr);
        Bench::resetPeak();
        const double idle = Bench::residentKib();
        const int reports = arguments.at(3).toInt();
        const double seconds = Bench::secondsOf([&] {
            for (int i = 0; i < reports; ++i) {
                if (arguments.at(0) == daily)
                    dailyReport.makeReport(recipients, moment);
                else
                    monthlyReport.makeReport(recipients, moment);
            }
        });
        Bench::print({{Bench::secondsFigure, seconds},
                      {Bench::peakFigure, (Bench::peakKib() - idle) / 1024}});
    }
    QSqlDatabase::removeDatabase(connectionName);
}

/// Executes recorded statements and prints the time. Arguments: "floor", the schema, and the file
/// with the statements.
void runFloor(const QStringList &arguments)
{
    const Recording recording = loadRecording(arguments.at(2));
    BareClient client(arguments.at(1));
    const double seconds = Bench::secondsOf([&] {
        for (const RecordedStatement &statement : recording)
            client.run(statement);
    });
    Bench::print({{Bench::secondsFigure, seconds}});
}

QString fileOf(const QString &report, const BenchSchema &schema)
{
    return QDir::tempPath() + (report == daily
                                   ? QStringLiteral("/DennyReport_%1_112026.xlsx")
                                   : QStringLiteral("/MesReportDochadzky_%1_112026.xlsx"))
                                  .arg(schema.name());
}

/// Checks that the workbook has `rows` rows below the heading, that `mails` mails have been queued
/// since the last check, and that the last mail contains the workbook.
void check(const QString &report, const BenchSchema &schema, int rows, int mails)
{
    const QString path = fileOf(report, schema);
    requireRows(path, rows + 1);
    QFile file(path);
    Bench::require(file.open(QIODevice::ReadOnly), path);
    const QByteArray content = file.readAll();
    const auto queued = schema.tables().rows(QStringLiteral("SELECT data FROM emails"));
    Bench::require(queued.size() == mails, QStringLiteral("%1 mails").arg(queued.size()));
    const QByteArray data = queued.last().first().toByteArray();
    const QJsonDocument document = QJsonDocument::fromJson(data);
    Bench::require(document.toJson(QJsonDocument::Indented) == data,
                   QStringLiteral("the mail's document is not as a JSON writer lays it out"));
    const QJsonObject attachment =
        document.object()[QStringLiteral("attachments")].toArray().first().toObject();
    Bench::require(QByteArray::fromBase64(
                       attachment[QStringLiteral("content")].toString().toLatin1()) == content,
                   QStringLiteral("the mail does not carry the file"));
    schema.tables().exec(QStringLiteral("TRUNCATE emails"));
}

void printRow(const QString &work, double ours, const QString &against, double theirs,
              const char *unit, double goal, int decimals)
{
    TableRow{work, ours, against, theirs, QString::fromLatin1(unit), goal, decimals}.print();
}

/// Runs the report in turn with its own statements, recorded from one run. Returns the report's
/// figures.
QVector<Bench::Figures> compare(const Bench::Plan &plan, const QString &report, const Size &size,
                                const BenchSchema &schema, double goal)
{
    const QStringList ours{report, schema.name(), QString::number(size.days), QStringLiteral("1")};
    const QString file = QDir::tempPath() + QStringLiteral("/statements");
    saveRecording(file, recordStatements(schema.tables(), [&] { Bench::child(ours); }));
    const auto runs =
        Bench::inTurn(plan.pairs, {ours, {QStringLiteral("floor"), schema.name(), file}});
    const int rows = report == daily ? size.people * size.days : size.people;
    check(report, schema, rows, 1 + 2 * plan.pairs); // the recorded statements also queue the mail
    printRow(QStringLiteral("%1 report, %2 people: time").arg(report).arg(size.people),
             Bench::median(runs[0], Bench::secondsFigure), QStringLiteral("its statements alone"),
             Bench::median(runs[1], Bench::secondsFigure), "s", goal, 3);
    return runs[0];
}

/// Runs the report once and counts the statements that each read a single person. Compares their
/// number with that of the values, each of which could be read by a statement of its own.
void countStatements(const Size &size, const BenchSchema &schema)
{
    static const QRegularExpression ofOnePerson(QStringLiteral("uid ?= ?[0-9]"));
    const QStringList arguments{daily, schema.name(), QString::number(size.days),
                                QStringLiteral("1")};
    const Recording recording = recordStatements(schema.tables(), [&] { Bench::child(arguments); });
    const auto single = std::count_if(recording.cbegin(), recording.cend(), [](const auto &sent) {
        return ofOnePerson.match(QString::fromUtf8(sent.text)).hasMatch();
    });
    const double cells = 4.0 * size.people * size.days;
    printRow(QStringLiteral("daily report, %1 people: statements one by one").arg(size.people),
             double(single), QStringLiteral("one for each value"), cells, "", 0.05, 0);
}

/// Runs the report in turn with the Python program, and checks that both workbooks have the same
/// cells.
void compareWithPeer(const Bench::Plan &plan, const Size &size, const BenchSchema &schema)
{
    const QTemporaryDir folder;
    const QStringList ours{daily, schema.name(), QString::number(size.days), QStringLiteral("1")};
    const QStringList theirs = QStringList{QStringLiteral("peer")} +
                               PeerReport::one(schema.name(), size.days, folder.path());
    const auto runs = Bench::inTurn(plan.pairs, {ours, theirs});
    const QString path = fileOf(daily, schema);
    requireSameCells(path, folder.filePath(QFileInfo(path).fileName()));
    printRow(QStringLiteral("daily report, %1 people, without start-up: time").arg(size.people),
             Bench::median(runs[0], Bench::secondsFigure), QStringLiteral("Python, XlsxWriter"),
             Bench::median(runs[1], Bench::secondsFigure), "s", 0.5, 3);
    const double ourPeak = Bench::median(runs[0], Bench::peakFigure);
    printRow(QStringLiteral("daily report: peak memory above idle"), ourPeak,
             QStringLiteral("Python, XlsxWriter"), Bench::median(runs[1], Bench::peakFigure), "MiB",
             0.5, 1);
    printRow(QStringLiteral("daily report: peak memory above idle"), ourPeak,
             QStringLiteral("limit"), 15, "MiB", 1, 1);
}

void compareDaily(const Bench::Plan &plan)
{
    const Size size = plan.quick ? Size{20, 3} : Size{1000, 30};
    const BenchSchema schema(size.people, size.days);
    compareWithPeer(plan, size, schema);
    countStatements(size, schema);
    schema.tables().exec(QStringLiteral("TRUNCATE emails"));
    const auto runs = compare(plan, daily, size, schema, 1.10);
    const double fileMib = double(QFileInfo(fileOf(daily, schema)).size()) / (1024 * 1024);
    printRow(QStringLiteral("daily report: peak memory above idle"),
             Bench::median(runs, Bench::peakFigure), QStringLiteral("the saved file"), fileMib,
             "MiB", 12, 2);
}

void compareMonthly(const Bench::Plan &plan)
{
    const Size size = plan.quick ? Size{20, 3} : Size{5000, 30};
    const BenchSchema schema(size.people, size.days);
    compare(plan, monthly, size, schema, 1.25);
}

/// Measures the time per row for several sizes. A run makes smaller reports several times, so that
/// all runs make the same number of rows.
///
/// If the tables contain only the month of the report, the server may read the complete tables for
/// a few people, but use the index for many people, which costs more. Therefore the growth is
/// measured with and without data of the month before.
void growth(const Bench::Plan &plan, BenchSchema::Past past)
{
    constexpr int days = 10;
    const auto tables = past == BenchSchema::Past::None ? QStringLiteral("this month")
                                                        : QStringLiteral("a month more");
    const QVector<int> sizes = plan.quick ? QVector<int>{5, 10} : QVector<int>{100, 1000, 10000};
    const int rounds = plan.quick ? 1 : 3;
    std::vector<std::unique_ptr<BenchSchema>> schemas;
    QVector<QStringList> sides;
    QVector<int> repeats;
    for (const int people : sizes) {
        schemas.push_back(std::make_unique<BenchSchema>(people, days, past));
        repeats.append(plan.quick ? 1 : std::max(1, sizes.last() / people));
        sides.append({daily, schemas.back()->name(), QString::number(days),
                      QString::number(repeats.last())});
    }
    const auto runs = Bench::inTurn(rounds, sides);
    QStringList works;
    QVector<double> microseconds;
    for (int i = 0; i < sizes.size(); ++i) {
        const int rows = sizes[i] * days;
        check(daily, *schemas[std::size_t(i)], rows, rounds * repeats[i]);
        works.append(QStringLiteral("growth, daily report of %1 people, tables of %2: time per row")
                         .arg(QString::number(sizes[i]), tables));
        microseconds.append(Bench::median(runs[i], Bench::secondsFigure) * 1e6 /
                            (rows * repeats[i]));
    }
    printGrowth(works, microseconds);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("TZ", "Europe/Bratislava");
    tzset();
    const QCoreApplication application(argc, argv);
    const Bench::Plan plan(QCoreApplication::arguments());
    if (!plan.run.isEmpty()) {
        if (plan.run.first() == QStringLiteral("peer"))
            return PeerReport::run(plan.run.mid(1));
        if (plan.run.first() == QStringLiteral("floor"))
            runFloor(plan.run);
        else
            runReport(plan.run);
        return 0;
    }
    const QTemporaryDir folder;
    qputenv("TMPDIR", QFile::encodeName(folder.path())); // child processes save reports there, too
    compareDaily(plan);
    compareMonthly(plan);
    growth(plan, BenchSchema::Past::None);
    growth(plan, BenchSchema::Past::OneMonth);
    return 0;
}
