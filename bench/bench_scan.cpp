// Measures a scan that finds no enabled reports. Compares it with a bare client that connects to
// each schema, executes the same query, and disconnects.

#include "support/bareclient.h"
#include "support/measure.h"
#include "support/tablerow.h"
#include "support/testhost.h"

#include "common/filelimit.h"
#include "plugin/autoreport.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

namespace
{

const QString firstFigure = QStringLiteral("firstSeconds");
const QString likeQtFigure = QStringLiteral("secondsLikeQt");
const QString query =
    QStringLiteral("SELECT name, value FROM vars WHERE name IN ('autoReport.DailyAtten.enabled', "
                   "'autoReport.MonthlyAtten.enabled')");

/// Scans the schemas and returns the seconds. A long scan continues in the event loop.
double scan(AutoReport &plugin)
{
    return Bench::secondsOf([&plugin] {
        QMetaObject::invokeMethod(&plugin, "checkSchemas", Qt::DirectConnection);
        while (isScanning(plugin))
            QCoreApplication::processEvents();
    });
}

int connectionsSoFar(const TestDatabase &database)
{
    return database.rows(QStringLiteral("SHOW GLOBAL STATUS LIKE 'Connections'"))[0][1].toInt();
}

/// Measures the first scan, which also opens the manager's connections, and a later one.
void runScan(int schemas)
{
    TestHost host;
    const TestDatabase schema(TestDatabase::Tables::Schema);
    QStringList tokens;
    for (int i = 0; i < schemas; ++i)
        tokens.append(QStringLiteral("firm%1").arg(i));
    host.addSchemas(tokens, schema);

    AutoReport plugin;
    plugin.setDBManager(host.manager());
    Bench::failOnWarnings();
    Bench::require(plugin.start(), QStringLiteral("not started"));
    const double first = scan(plugin);
    const int before = connectionsSoFar(schema);
    const double next = scan(plugin);
    Bench::require(connectionsSoFar(schema) == before + schemas,
                   QStringLiteral("not one connection a schema"));
    plugin.stop();
    Bench::print({{firstFigure, first}, {Bench::secondsFigure, next}});
    qInstallMessageHandler(nullptr);
}

/// Measures the work of a scan with a bare client. Like the first scan of the plug-in, the client's
/// first pass also reads each schema's entry in the information database, and keeps a connection to
/// each schema open.
void runFloor(int schemas)
{
    const TestDatabase schema(TestDatabase::Tables::Schema);
    const TestDatabase info(TestDatabase::Tables::Info);
    const auto check = [&schema] {
        BareClient(schema.name()).query(query.toUtf8());
    };
    BareClient infoClient(info.name());
    std::vector<std::unique_ptr<BareClient>> kept;
    const double first = Bench::secondsOf([&] {
        for (int i = 0; i < schemas; ++i) {
            infoClient.query(
                "SELECT * FROM `schemas` WHERE status = 1 AND token = 'firm' LIMIT 1;");
            kept.push_back(std::make_unique<BareClient>(schema.name()));
            check();
        }
    });
    const double next = Bench::secondsOf([&] {
        for (int i = 0; i < schemas; ++i)
            check();
    });
    const double likeQt = Bench::secondsOf([&] {
        for (int i = 0; i < schemas; ++i) {
            BareClient client(schema.name());
            client.openLikeQt(schema.name());
            client.query(query.toUtf8());
        }
    });
    Bench::print({{firstFigure, first}, {Bench::secondsFigure, next}, {likeQtFigure, likeQt}});
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Bench::Plan plan(QCoreApplication::arguments());
    const int schemas = plan.quick ? 20 : 2500;
    raiseFileLimit();
    if (!plan.run.isEmpty()) {
        if (plan.run.first() == QStringLiteral("floor"))
            runFloor(plan.run.last().toInt());
        else
            runScan(plan.run.last().toInt());
        return 0;
    }
    const QString count = QString::number(schemas);
    const auto runs = Bench::inTurn(
        plan.pairs, {{QStringLiteral("scan"), count}, {QStringLiteral("floor"), count}});
    const auto row = [&runs](const QString &work, const QString &figure, const QString &against,
                             const QString &floorFigure) {
        TableRow{work,
                 Bench::median(runs[0], figure),
                 against,
                 Bench::median(runs[1], floorFigure),
                 QStringLiteral("s"),
                 1.25}
            .print();
    };
    const QString work = QStringLiteral("scan of %1 schemas, none enabled").arg(schemas);
    row(work, Bench::secondsFigure, QStringLiteral("connect, query, disconnect"),
        Bench::secondsFigure);
    row(work, Bench::secondsFigure, QStringLiteral("with what Qt's driver asks on connecting"),
        likeQtFigure);
    row(QStringLiteral("the first scan, which leaves a connection to each"), firstFigure,
        QStringLiteral("the same, bare"), firstFigure);
    return 0;
}
