#include "reports/dailyattenreport.h"

#include "support/reportbench.h"

class TestDailyReport : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void rows_data()
    {
        addRow("no options", "", "{}");
        addRow("decimal time", "dattenIsTimeDec",
               R"({"H": 7, "I": 1, "J": 1, "K": 0.016666666666666666, "M": 2, "N": 1})");
        addRow("minus sign", "dattenIsMinusSign", R"({"I": "-01:00:00"})");
        addRow("interruptions", "dattenInters", R"({"O": "[D 01:30:00-2x][L 00:15:05]"})");
        addRow("advanced overtime", "advancedOvertime", R"({"J": "00:30:00"})");
        addRow("home branch", "dattenHomeBranch", R"({"F": "Žilina"})");
        addRow(
            "all at once", allOptions,
            R"({"F": "Žilina", "H": 7, "I": -1, "J": 0.5, "K": 0.016666666666666666, "M": 2, "N": 1,
               "O": "[D 1.5-2x][L 0.2514]"})");
    }

    /// The row of the second day and the first person: the sheet has four people a day.
    void rows()
    {
        const auto [options, cells] = fetch<QString, QString>(); // what the options change
        const QJsonObject sheet = sheetWith(options, "xlsx");
        const char *plain =
            R"({"A": 101, "B": "Novák Ján Ing.", "C": "Výroba", "D": "3", "E": "Majster",
            "F": "Košice", "G": 2, "H": "07:00:00", "I": "01:00:00", "J": "01:00:00",
            "K": "00:01:00", "M": "02:00:00", "N": "01:00:00"})";
        QCOMPARE(sheetRow(sheet, 6), rowOf(cells.contains("\"O\"") ? 15 : 14, plain, cells));
        QCOMPARE(rowCount(sheet), 9);

        // The binary book holds the same, cell by cell, with looks, widths and page set-up.
        QCOMPARE(withoutEmptyCells(sheetWith(options, "xls")), withoutEmptyCells(sheet));
    }

    void layout()
    {
        const QJsonObject sheet = sheetWith("dattenIsTimeDec dattenInters", "xlsx");
        QCOMPARE(sheet.value("name").toString(), QString("Denný report doch. 11-2023"));
        QCOMPARE(sheetRow(sheet, 1),
                 QJsonArray({"OSCISLO", "MENO", "SKUPINA", "ZMENA", "ZARADENIE", "STREDISKO", "DEN",
                             "ODPRACOVANY CAS", "NEODPRACOVANY CAS", "NADCAS", "NEUZNANY CAS",
                             "ZAOKRUHLENIE", "POSUN", "PENALIZACIA", "PRERUSENIA"}));
        // People of a day before people of the next; the last person has but a name.
        QCOMPARE(column(sheet, "A"), QString("101 103 104 102 101 103 104 102"));
        QCOMPARE(column(sheet, "G"), QString("1 1 1 1 2 2 2 2"));
        QCOMPARE(sheetRow(sheet, 5), rowOf(15, R"({"A": 102, "B": "Ťažký Šimon", "C": "", "E": "",
            "F": "", "G": 1, "O": ""})"));
        QCOMPARE(cellValue(sheet, "H9"), QJsonValue(3541 / 3600.0));
        QCOMPARE(cellValue(sheet, "I9"), QJsonValue()); // 59 seconds

        const QString font = "MS Shell Dlg 2 10, ";
        const QStringList looks[] = {{"B1", "general bottom, General, medium auto"},
                                     {"A6", "general bottom, General"},
                                     {"D6", "center bottom, General"},
                                     {"H6", "right bottom, #0.00"}};
        for (const QStringList &look : looks)
            QCOMPARE(cellValue(sheet, look[0], "look"), QJsonValue(font + look[1]));
        QCOMPARE(widths(sheet), QString("B17 C20 D10 E20 F20 G4 H20 I20 J20 K20 L20 M20 N20 O26"));
        checkPage(sheet);
    }

    /// The same object makes them all; data of the previous run must not show.
    void shiftsOfEachRun()
    {
        DailyAttenReport report(bench->database, nullptr);
        const auto shown = [&] {
            report.makeReport({"a@firma.sk"}, now);
            return column(readSheet(file("xlsx")), "D");
        };
        QCOMPARE(shown(), QString("- 1 - - 3 - - -"));
        QCOMPARE(report.shiftFor(7, 1), 1);
        bench->schema.exec("UPDATE atten SET shift = 2 WHERE uid = 7;\n"
                           "DELETE FROM atten WHERE uid = 1");
        QCOMPARE(shown(), QString("- 2 - - - - - -"));
        report.loadShiftsForMonth(now.date());
        const QVector<int> shifts{report.shiftFor(7, 1), report.shiftFor(2, 2),
                                  report.shiftFor(1, 2)};
        QCOMPARE(shifts, QVector<int>({2, 0, -1}));
        bench->schema.exec("ALTER TABLE atten DROP shift");
        QCOMPARE(shown(), QString("- - - - - - - -"));

        QCOMPARE(report.monthToDate(202311), QDate(2023, 11, 1));
        QVERIFY(!report.monthToDate(202313).isValid());
        QCOMPARE(report.dateToMonth(QDate(2023, 1, 31)), 202301U);
    }

    /// A program that saves the .xls and the .xlsx as .xlsx makes the same workbook of both.
    void binaryBookInOtherPrograms()
    {
        for (const QString suffix : {"xlsx", "xls"})
            sheetWith(allOptions, suffix);
        for (const Program program : {Program::Gnumeric, Program::LibreOffice}) {
            const auto shown = [&](const QString &suffix) {
                const QString copy = savedBy(program, file(suffix), "xlsx");
                const auto book = QJsonDocument::fromJson(readRaw("--foreign", copy)).object();
                QJsonObject sheet = withoutEmptyCells(book["sheets"].toArray()[0].toObject());
                // The reports set these widths; what the programs say about others differs.
                QJsonArray widths;
                for (const char column : "BCDEFGHIJKLMNO")
                    widths += qFloor(sheet["columnWidths"].toObject()[QString(column)].toDouble());
                sheet["columnWidths"] = widths;
                return sheet;
            };
            QJsonObject xls = shown("xls");
            QJsonObject xlsx = shown("xlsx");
            QVERIFY(cellValue(xls, "O6") == QJsonValue("[D 1.5-2x][L 0.2514]"));
            if (program == Program::LibreOffice) {
                // Without a window, it drops the frozen row of any .xlsx (7.4) or any .xls (25.2).
                QVERIFY(xls["freeze"] == "A2" || xlsx["freeze"] == "A2");
                xls["freeze"] = xlsx["freeze"] = "A2";
            }
            QVERIFY2(xls == xlsx, program == Program::Gnumeric ? "gnumeric" : "office");
        }
    }

private:
    inline static const QDateTime now{QDate(2023, 11, 2), QTime(7, 0, 5)};
    inline static const QString allOptions =
        "dattenIsTimeDec dattenIsMinusSign dattenInters advancedOvertime dattenHomeBranch";

    /// Four people employed in the month and five who are not; one busy day of the first, with rows
    /// of the neighbouring days. Of several rows about one day, the last counts.
    void prepare() override
    {
        const auto start = [](int month, int day) {
            return QString::number(QDate(2023, month, day).startOfDay().toSecsSinceEpoch());
        };
        const QString sql = R"(
            INSERT INTO `groups` VALUES (1, 'Výroba');
            INSERT INTO departs VALUES (1, 'Majster');
            INSERT INTO branches VALUES (1, 'Žilina'), (2, 'Košice');
            INSERT INTO people (uid, pid, surname, name, title, gid, did, bid, status, begin, end)
                VALUES (1, 101, ' Novák', 'Ján', 'Ing.', 1, 1, 1, 1, 0, NULL),
                (2, 102, 'Ťažký', 'Šimon', NULL, NULL, NULL, NULL, 1, 0, %1),
                (3, 104, 'Ťažký', 'Adam', NULL, 1, 1, 1, 1, 0, NULL),
                (7, 103, 'Ťažký', 'Adam', NULL, 1, 1, 1, 1, 0, NULL),
                (4, 105, 'Skrytý', '<anonym>', NULL, 1, 1, 1, 1, 0, NULL),
                (5, 106, 'Bývalý', 'Ivan', NULL, 1, 1, 1, 0, 0, NULL),
                (6, 107, 'Bývalý', 'Ivan', NULL, 1, 1, 1, 2, 0, NULL),
                (8, 108, 'Budúci', 'Ivan', NULL, 1, 1, 1, 1, %3, NULL),
                (9, 109, 'Minulý', 'Ivan', NULL, 1, 1, 1, 1, 0, %1 - 1);
            INSERT INTO brape (uid, bid, since) VALUES (1, 2, 20), (1, 1, 10);
            INSERT INTO inters VALUES (3, 'D', 'Dovolenka'), (8, 'L', 'Lekár');
            ALTER TABLE atten DROP KEY uid;
            INSERT INTO atten (uid, date, dom, shift, fond, work, diff, saldo_p, ok)
                VALUES (1, %2, 2, 9, 28800, 9000, 7200, 5400, 1),
                (1, %2, 2, 9, 28800, 9000, 3600, 5400, 1),
                (1, %2, 2, 9, 28800, 9000, 9999, 9999, 0),
                (1, %3 - 1, 2, 9, 28800, 9000, 9999, 1800, 1),
                (1, %3 - 1, 2, 3, 28800, 25200, 9999, 9999, 0),
                (1, %3, 3, 9, 9999, 9999, 9999, 9999, 1),
                (2, %2, 2, 0, 3600, 3541, 59, 0, 1), (7, %1, 1, 1, 0, 0, 0, 0, 0),
                (2, %1 - 1, 1, 9, 0, 0, 0, 0, 1), (2, %4, 1, 9, 0, 0, 0, 0, 1);
            INSERT INTO atten_data (uid, iid, `from`, duration, del)
                VALUES (1, 1000, %2, 60, 0), (1, 1001, %2, 59, 0), (1, 1002, %2, 1800, 0),
                (1, 1002, %2 + 1, 1800, 0), (1, 1003, %3 - 1, 7200, 0), (1, 1003, %3, 9, 0),
                (1, 1004, %2, 7777, 0), (1, 3, %2, 1800, 0), (1, 3, %2, 3600, 0),
                (1, 8, %3 - 1, 905, 0), (1, 8, %2, 900, 1), (1, 1, %2, 25200, 0),
                (1, 8, %2 - 1, 9999, 0), (1, 8, %3, 9999, 0))";
        bench->schema.exec(sql.arg(start(11, 1), start(11, 2), start(11, 3), start(12, 1)));
    }

    /// Returns the cells of a column below the heading; "-" for an empty one.
    static QString column(const QJsonObject &sheet, const QString &letter)
    {
        QStringList values;
        for (int row = 2; row <= rowCount(sheet); ++row)
            values += cellValue(sheet, letter + QString::number(row)).toVariant().toString();
        return values.replaceInStrings(QRegExp("^$"), "-").join(' ');
    }

    /// A binary book has no empty text, and programs save no empty cells.
    static QJsonObject withoutEmptyCells(QJsonObject sheet)
    {
        QJsonObject cells = sheet["cells"].toObject();
        for (const QString &cell : cells.keys()) {
            const QJsonValue value = cellValue(sheet, cell);
            if (value.isNull() || value == QJsonValue(""))
                cells.remove(cell);
        }
        sheet["cells"] = cells;
        return sheet;
    }

    /// Makes the report with the settings named in `options` switched on; returns the sheet.
    QJsonObject sheetWith(const QString &options, const QString &suffix)
    {
        for (const QString &option : options.split(' ', Qt::SkipEmptyParts))
            bench->set(option, "1");
        bench->set("exportUseXLSX", suffix == "xlsx" ? "1" : "0");
        DailyAttenReport(bench->database, nullptr).makeReport({"a@firma.sk"}, now);
        return readSheet(file(suffix));
    }
    QString file(const QString &suffix) const
    {
        return bench->file("DennyReport", now.date(), suffix);
    }
};

QTEST_GUILESS_MAIN(TestDailyReport)
#include "tst_dailyreport.moc"
