#include "reports/monthlyattenreport.h"

#include "support/reportbench.h"
#include "support/workbookreader.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QtMath>

#include <memory>

namespace
{

QString unixTime(const QDate &date)
{
    return QString::number(date.startOfDay().toSecsSinceEpoch());
}

/// Sixty people of the month: the first has all kinds of values, the second a row of zeros, the
/// third a NULL, the fourth no row of the month. Two more are on the wrong side of its edges.
void fillSchema(const TestDatabase &schema, const QDate &month)
{
    const QString begin = unixTime(month);
    const QString end = unixTime(month.addMonths(1));
    const QString key = month.toString("yyyyMM");
    schema.exec(QStringList{
        "INSERT INTO people (uid, pid, pamId, surname, name, title) SELECT seq, seq + 100, "
        "CONCAT('P', seq), CONCAT('Priezvisko', LPAD(seq, 2, '0')), 'Ján', IF(seq = 1, 'Ing. ', "
        "NULL) FROM seq_1_to_59",
        QString("INSERT INTO people (uid, pid, surname, name, begin, end) VALUES "
                "(60, 160, 'Ukončený', 'Ivan', 0, %1), (61, 161, 'Ukončený', 'Skôr', 0, %1 - 1), "
                "(62, 162, 'Začne', 'Neskôr', %2, NULL), (63, 163, 'Ypsilon', 'Včas', %2 - 1, %2)")
            .arg(begin, end),
        "INSERT INTO inters VALUES (3, 'D', 'Dovolenka'), (20, 'SC', 'Služobná cesta'), (21, 'X ', "
        "'Iné')",
        "ALTER TABLE atten_month MODIFY work DOUBLE NULL",
        QString(
            "INSERT INTO atten_month (uid, month, fond, work, saldo_p, totalSaldo, holidayFond, "
            "holidaySum, bonus, day6sum, day7sum, night, vouchers) VALUES "
            "(1, %1, 576000, 594000, 3600, 18000, 28800, 1800, 3600, 7200, 10800, 14400, 20), "
            "(2, %1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), "
            "(3, %1, 36000, NULL, 0, -3600, 0, 0, 0, 0, 0, 0, 0), "
            "(4, %1 - 1, 36000, 36000, 0, 0, 0, 0, 0, 0, 0, 0, 9)")
            .arg(key),
        QString("INSERT INTO atten_data (uid, iid, `from`, duration, del) VALUES "
                "(1, 3, %1, 1800, 0), (1, 3, %2 - 1, 5400, 0), (1, 8, %1, 3600, 0), "
                "(1, 15, %1, 7200, 0), (1, 7, %1, 900, 0), (1, 14, %1, 360, 0), (1, 9, %1, 36, 0), "
                "(1, 20, %1, 4500, 0), (1, 3, %2, 9999, 0), (1, 3, %1, 9999, 1), "
                "(1, 1, %1, 9999, 0), (1, 1000, %1, 9999, 0), "
                "(2, 3, %1, 3600, 0), (2, 3, %1, -3600, 0)")
            .arg(begin, end)});
}

} // namespace

class TestMonthlyReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { bench = std::make_unique<ReportBench>(); }
    void cleanup() { bench.reset(); }
    void sheet_data();
    void sheet();
    void layout();
    void formulaResults();
    void mailAndBookkeeping();
    void countsAsMadeWithoutMail();
    void survivesFailedQueries_data();
    void survivesFailedQueries();
    void endsWithoutMail_data();
    void endsWithoutMail();
    void interruptionMaps();

private:
    QString file(const QDate &month) const
    {
        return bench->temporary.filePath(QString("MesReportDochadzky_%1_%2.xlsx")
                                             .arg(bench->schema.name(), month.toString("MMyyyy")));
    }
    void makeReport(const QDate &month)
    {
        MonthlyAttenReport(bench->database, nullptr)
            .makeReport({"a@firma.sk"}, QDateTime(month.addDays(27), QTime(7, 0, 5)));
    }
    QVariant lastGenerated() const { return bench->lastGenerated("MonthlyAtten"); }

    std::unique_ptr<ReportBench> bench;
};

void TestMonthlyReport::initTestCase()
{
    ReportBench::setTimeZone();
}

void TestMonthlyReport::sheet_data()
{
    QTest::addColumn<QDate>("month");
    QTest::addColumn<QString>("options");  // key=value, separated by semicolons
    QTest::addColumn<QString>("first");    // what differs in the first person's row: column, value
    QTest::addColumn<QString>("headings"); // from column V on

    const QDate october(2024, 10, 1);
    const QDate leap(2024, 2, 1);
    const auto row = [](const char *name, const QDate &month, const char *options,
                        const char *first, const char *headings) {
        QTest::newRow(name) << month << QString(options) << QString(first) << QString(headings);
    };
    row("month of 25-hour day", october, "", R"({"V": 20})", R"(["Stravné j."])");
    row("leap February, one extra", leap, "monthAttenInterrupts=SC", R"({"V": 1.25, "W": 20})",
        R"(["Služobná cesta", "Stravné j."])");
    row("three extras, one unknown, one blank", october, "monthAttenInterrupts=SC,??, D",
        R"({"V": 1.25, "Y": 20})", R"(["Služobná cesta", "", "", "Stravné j."])");
    row("payroll number", october, "monthAttenUsePamID=1", R"({"A": "P1", "V": 20})",
        R"(["Stravné j."])");
    row("advanced overtime 1", leap, "advancedOvertime=1", R"({"J": 1, "V": 20})",
        R"(["Stravné j."])");
    row("advanced overtime 2 is 0", leap, "advancedOvertime=2", R"({"V": 20})",
        R"(["Stravné j."])");
}

void TestMonthlyReport::sheet()
{
    QFETCH(QDate, month);
    QFETCH(QString, options);
    QFETCH(QString, first);
    QFETCH(QString, headings);
    fillSchema(bench->schema, month);
    for (const QString &option : options.split(';', Qt::SkipEmptyParts))
        bench->set(option.section('=', 0, 0), option.section('=', 1));
    makeReport(month);

    const QJsonObject book = readSheet(file(month));
    const QJsonArray extra = QJsonDocument::fromJson(headings.toUtf8()).array();
    QCOMPARE(rowCount(book), 62);
    QCOMPARE(sheetRow(book, 1).size(), 21 + extra.size());
    for (int i = 0; i < extra.size(); ++i)
        QCOMPARE(sheetRow(book, 1).at(21 + i), extra.at(i));
    QCOMPARE(cellValue(book, "A1").toString(),
             options.contains("PamID") ? QString("PamID") : QString("ID"));

    QJsonObject expected = QJsonDocument::fromJson(R"json({"A": 101, "B": "Priezvisko01 Ján Ing.",
        "C": 160, "D": 2, "E": 1, "F": 2, "G": 0.25, "H": 0.1, "I": 0.01, "J": 5, "K": 165,
        "L": "=K2-C2", "M": "=K2/(C2/100)", "N": null, "O": "=N2*(K2/100)", "P": 8, "Q": 0.5,
        "R": 1, "S": 2, "T": 3, "U": 4
})json")
                               .object();
    const QJsonObject differences = QJsonDocument::fromJson(first.toUtf8()).object();
    for (auto cell = differences.begin(); cell != differences.end(); ++cell)
        expected.insert(cell.key(), cell.value());
    for (auto cell = expected.begin(); cell != expected.end(); ++cell)
        QCOMPARE(cellValue(book, cell.key() + "2"), cell.value());

    // A month of zeros, and one without a fund: the difference alone; 0 hours worked are shown.
    QCOMPARE(sheetRow(book, 3).at(3), QJsonValue()); // a sum of exactly 0
    QCOMPARE(cellValue(book, "K3"), QJsonValue(0));
    QCOMPARE(cellValue(book, "L3"), QJsonValue("=K3-C3"));
    QCOMPARE(cellValue(book, "M3"), QJsonValue());
    QCOMPARE(cellValue(book, "O3"), QJsonValue());
    QCOMPARE(cellValue(book, "K4"), QJsonValue(0)); // NULL reads as 0
    QCOMPARE(cellValue(book, "J4"), QJsonValue());  // negative overtime
    QCOMPARE(cellValue(book, "C5"), QJsonValue());
    QCOMPARE(cellValue(book, "K5"), QJsonValue());
    QCOMPARE(cellValue(book, "L5"), QJsonValue("=K5-C5"));
    QCOMPARE(cellValue(book, "B61"), QJsonValue("Ukončený Ivan"));
    QCOMPARE(cellValue(book, "B62"), QJsonValue("Ypsilon Včas"));
}

void TestMonthlyReport::layout()
{
    const QDate month(2024, 10, 1);
    fillSchema(bench->schema, month);
    bench->set("monthAttenInterrupts", "SC,??");
    makeReport(month);
    const QJsonObject sheet = readSheet(file(month));
    QCOMPARE(sheet.value("name").toString(), QString("Mes. report dochádzky"));
    QJsonArray headings = sheetRow(sheet, 1);
    for (int extra = 0; extra < 3; ++extra)
        headings.removeLast();
    QCOMPARE(headings, QJsonArray({"ID",
                                   "Priezvisko a meno",
                                   "Plánovaný mesačný fond",
                                   "Dovolenka",
                                   "Lekár",
                                   "PN",
                                   "Paragraf",
                                   "OČR",
                                   "NV",
                                   "Nadčas",
                                   "Skutočne odpracované hodiny",
                                   "Rozdiel",
                                   "Odpracované hodiny v %",
                                   "Navrhnuté prémie",
                                   "Výsledné prémie",
                                   "Sviatok",
                                   "Odpracovaný sviatok",
                                   "Príplatkový čas",
                                   "Sobota",
                                   "Nedeľa",
                                   "Nočná"}));

    const QJsonObject cells = sheet.value("cells").toObject();
    const auto look = [&cells](const char *cell) {
        const QJsonObject all = cells.value(cell).toObject();
        const QJsonObject left = all.value("borders").toObject().value("left").toObject();
        return QString("%1%2, %3 %4%5, %6 %7")
            .arg(all.value("numberFormat").toString(),
                 all.value("font").toObject().value("bold").toBool() ? " bold" : "",
                 all.value("horizontal").toString(), all.value("vertical").toString(),
                 all.value("wrap").toBool() ? " wrap" : "", left.value("style").toString(),
                 left.value("color").toString());
    };
    QCOMPARE(look("X1"), QString("General bold, center bottom, medium auto"));
    QCOMPARE(look("A2"), QString("General, right center, thin FF000000"));
    QCOMPARE(look("B2"), QString("#0.00, left top wrap, thin FF000000"));
    for (const char *cell : {"C2", "L2", "N2", "C5", "W5", "X5"})
        QCOMPARE(look(cell), QString("#0.00, center top wrap, thin FF000000"));

    const QJsonObject widths = sheet.value("columnWidths").toObject();
    const QHash<QString, int> chars{{"A", 10}, {"B", 20}, {"C", 23}, {"D", 12}, {"K", 28},
                                    {"M", 24}, {"N", 18}, {"P", 18}, {"Q", 24}, {"R", 18},
                                    {"T", 18}, {"V", 16}, {"W", 2},  {"X", 12}};
    for (auto width = chars.begin(); width != chars.end(); ++width)
        QCOMPARE(qFloor(widths.value(width.key()).toDouble()), width.value());
    for (const char *column : {"E", "J", "L", "U"})
        QVERIFY(!widths.contains(column));
    QCOMPARE(sheet.value("rowHeights").toObject().value("1").toDouble(), 16.0);
    QVERIFY(!sheet.value("showGridLines").toBool() && sheet.value("printGridLines").toBool());
}

/// What the file says the formulas amount to, for readers that do not calculate.
void TestMonthlyReport::formulaResults()
{
    const QDate month(2024, 10, 1);
    fillSchema(bench->schema, month);
    makeReport(month);
    const QJsonObject cells = readSheet(file(month)).value("cells").toObject();
    const auto result = [&cells](const char *cell) {
        return cells.value(cell).toObject().value("cached");
    };
    QCOMPARE(result("L2"), QJsonValue(5));
    QCOMPARE(result("M2"), QJsonValue(165 / 1.6));
    QCOMPARE(result("O2"), QJsonValue(0));
    QCOMPARE(result("L4"), QJsonValue(-10));
    QCOMPARE(result("L5"), QJsonValue(0));
}

void TestMonthlyReport::mailAndBookkeeping()
{
    const QDate month(2024, 10, 1);
    fillSchema(bench->schema, month);
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    makeReport(month);
    const auto queued = bench->schema.rows("SELECT subject, body, data FROM emails");
    QCOMPARE(queued.size(), 1);
    QCOMPARE(queued.at(0).at(0).toString(), QString("Mesačný report dochádzky za 10 / 2024"));
    QCOMPARE(queued.at(0).at(1).toString(),
             QString("Mesačný report dochádzky sa nachádza v prílohe.\n\n\nTento e-mail bol "
                     "vygenerovaný automaticky dochádzkovým systémom ZAS."));
    QVERIFY(queued.at(0).at(2).toByteArray().contains(QFileInfo(file(month)).fileName().toUtf8()));
    QVERIFY(lastGenerated().toLongLong() >= before);
}

/// Unlike the daily report: a queue that takes nothing does not make the report come again.
void TestMonthlyReport::countsAsMadeWithoutMail()
{
    const QDate month(2024, 10, 1);
    fillSchema(bench->schema, month);
    bench->schema.exec("ALTER TABLE emails DROP COLUMN subject");
    makeReport(month);
    QCOMPARE(bench->log.count(QtWarningMsg, "MonthlyAttenReport::makeReport() - mail not created!"),
             1);
    QVERIFY(lastGenerated().isValid());
}

void TestMonthlyReport::survivesFailedQueries_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("warning");
    const auto row = [](const char *name, const char *statement, const char *warning) {
        QTest::newRow(name) << QString(statement) << QString(warning);
    };
    row("catalogue", "DROP TABLE inters", "MonthlyAttenReport::makeReport() inters ERROR: ");
    row("totals", "ALTER TABLE atten_month DROP COLUMN saldo_c",
        "MonthlyAttenReport::makeReport() atten_month ERROR: ");
    row("interruptions", "DROP TABLE atten_data",
        "MonthlyAttenReport::makeReport() atten_data ERROR: ");
    row("hours worked", "ALTER TABLE atten_month RENAME COLUMN work TO worked",
        "MonthlyAttenReport::makeReport() work ERROR: ");
}

void TestMonthlyReport::survivesFailedQueries()
{
    QFETCH(QString, statement);
    QFETCH(QString, warning);
    const QDate month(2024, 10, 1);
    fillSchema(bench->schema, month);
    bench->schema.exec(statement);
    makeReport(month);
    QCOMPARE(bench->log.countContaining(warning), 1);
    QCOMPARE(rowCount(readSheet(file(month))), 62);
    QVERIFY(lastGenerated().isValid());
}

void TestMonthlyReport::endsWithoutMail_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("line");
    QTest::newRow("people query") << "DROP TABLE people"
                                  << "MonthlyAttenReport::makeReport() people SQL ERROR: ";
    QTest::newRow("no people") << "DELETE FROM people"
                               << "MonthlyAttenReport - no people!";
    QTest::newRow("a folder stands in the way") << ""
                                                << "MonthlyAttenReport - XLS not saved!";
}

void TestMonthlyReport::endsWithoutMail()
{
    QFETCH(QString, statement);
    QFETCH(QString, line);
    const QDate month(2024, 10, 1);
    fillSchema(bench->schema, month);
    if (statement.isEmpty())
        QVERIFY(QDir().mkpath(file(month)));
    else
        bench->schema.exec(statement);
    makeReport(month);
    QCOMPARE(bench->log.countContaining(line), 1);
    QCOMPARE(bench->schema.value("SELECT COUNT(*) FROM emails").toInt(), 0);
    QVERIFY(!lastGenerated().isValid());
}

void TestMonthlyReport::interruptionMaps()
{
    fillSchema(bench->schema, QDate(2024, 10, 1));
    MonthlyAttenReport report(bench->database, nullptr);
    QHash<unsigned, QString> names;
    QHash<QString, unsigned> ids;
    QVERIFY(report.loadInterruptionMaps(names, ids));
    QCOMPARE(names.value(ids.value("SC")), QString("Služobná cesta"));
    bench->schema.exec("DROP TABLE inters");
    QVERIFY(!report.loadInterruptionMaps(names, ids));
    QCOMPARE(bench->log.countContaining("MonthlyAttenReport::loadInterruptionMaps() ERROR: "), 1);
}

QTEST_GUILESS_MAIN(TestMonthlyReport)
#include "tst_monthlyreport.moc"
