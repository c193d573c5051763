#include "reports/dailyattenreport.h"

#include "support/reportbench.h"

#include <QtMath>

class TestDailyReport : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void rows_data()
    {
        addColumns<QString, QString>("options", "cells"); // what the options change: column, value
        addRow("no options", "", "{}");
        addRow("decimal time", "dattenIsTimeDec",
               R"({"H": 7, "I": 1, "J": 1, "K": 0.016666666666666666, "M": 2, "N": 1})");
        addRow("minus sign", "dattenIsMinusSign", R"({"I": "-01:00:00"})");
        addRow("interruptions", "dattenInters", R"({"O": "[D 01:30:00-2x][L 00:15:00]"})");
        addRow("advanced overtime", "advancedOvertime", R"({"J": "00:30:00"})");
        addRow("home branch", "dattenHomeBranch", R"({"F": "Žilina"})");
        addRow(
            "all at once", allOptions,
            R"({"F": "Žilina", "H": 7, "I": -1, "J": 0.5, "K": 0.016666666666666666, "M": 2, "N": 1,
               "O": "[D 1.5-2x][L 0.25]"})");
    }

    /// The row of the second day and the first person: the sheet has two people a day.
    void rows()
    {
        QFETCH(QString, options);
        QFETCH(QString, cells);
        const QJsonObject sheet = sheetWith(options, "xlsx");
        const char *plain =
            R"({"A": 101, "B": "Novák Ján Ing.", "C": "Výroba", "D": "3", "E": "Majster",
            "F": "Košice", "G": 2, "H": "07:00:00", "I": "01:00:00", "J": "01:00:00",
            "K": "00:01:00", "M": "02:00:00", "N": "01:00:00"})";
        QCOMPARE(sheetRow(sheet, 4), rowOf(cells.contains("\"O\"") ? 15 : 14, plain, cells));
        QCOMPARE(rowCount(sheet), 5);

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
        // People of a day before people of the next; the second person has but a name.
        QCOMPARE(cellValue(sheet, "G2"), QJsonValue(1));
        QCOMPARE(cellValue(sheet, "B3"), QJsonValue("Ťažký Šimon"));
        QCOMPARE(cellValue(sheet, "D5"), QJsonValue());
        QCOMPARE(cellValue(sheet, "H5"), QJsonValue(3541 / 3600.0));
        QCOMPARE(cellValue(sheet, "I5"), QJsonValue()); // 59 seconds

        const QString font = "MS Shell Dlg 2 10, ";
        const QStringList looks[] = {{"B1", "general bottom, General, medium auto"},
                                     {"A4", "general bottom, General"},
                                     {"D4", "center bottom, General"},
                                     {"H4", "right bottom, #0.00"}};
        for (const QStringList &look : looks)
            QCOMPARE(cellValue(sheet, look[0], "look"), QJsonValue(font + look[1]));
        QCOMPARE(shownWidths(sheet),
                 QString("B17 C20 D10 E20 F20 G4 H20 I20 J20 K20 L20 M20 N20 O26"));
        checkPage(sheet);
    }

    /// What a program makes of the binary book, saved as .xlsx, is what it makes of the other one.
    void binaryBookInOtherPrograms()
    {
        for (const QString suffix : {"xlsx", "xls"})
            sheetWith(allOptions, suffix);
        for (const Program program : {Program::Gnumeric, Program::LibreOffice}) {
            const auto shown = [&](const QString &suffix) {
                const QString copy = savedBy(program, file(suffix), "xlsx");
                const auto book = QJsonDocument::fromJson(readRaw("--foreign", copy)).object();
                QJsonObject sheet = withoutEmptyCells(book["sheets"].toArray()[0].toObject());
                // LibreOffice without a window drops the frozen row of any .xlsx.
                if (suffix == "xlsx")
                    sheet["freeze"] = "A2";
                // The reports set these widths; what the programs say about others differs.
                QJsonArray widths;
                for (const char column : "BCDEFGHIJKLMNO")
                    widths += qFloor(sheet["columnWidths"].toObject()[QString(column)].toDouble());
                sheet["columnWidths"] = widths;
                return sheet;
            };
            QVERIFY(cellValue(shown("xls"), "O4") == QJsonValue("[D 1.5-2x][L 0.25]"));
            QVERIFY2(shown("xls") == shown("xlsx"),
                     program == Program::Gnumeric ? "gnumeric" : "office");
        }
    }

private:
    inline static const QDateTime now{QDate(2023, 11, 2), QTime(7, 0, 5)};
    inline static const QString allOptions =
        "dattenIsTimeDec dattenIsMinusSign dattenInters advancedOvertime dattenHomeBranch";

    /// Two people of the month, and four who do not belong to it; one busy day of the first.
    void prepare() override
    {
        const auto dayStart = [](int day) {
            return QString::number(QDate(2023, 11, day).startOfDay().toSecsSinceEpoch());
        };
        const QString sql = R"(
            INSERT INTO `groups` VALUES (1, 'Výroba');
            INSERT INTO departs VALUES (1, 'Majster');
            INSERT INTO branches VALUES (1, 'Žilina'), (2, 'Košice');
            INSERT INTO people (uid, pid, surname, name, title, gid, did, bid, status, begin, end)
                VALUES (1, 101, ' Novák', 'Ján', 'Ing.', 1, 1, 1, 1, 0, NULL),
                (2, 102, 'Ťažký', 'Šimon', NULL, NULL, NULL, NULL, 1, 0, %1),
                (3, 103, 'Skrytý', '<anonym>', NULL, 1, 1, 1, 1, 0, NULL),
                (4, 104, 'Bývalý', 'Ivan', NULL, 1, 1, 1, 0, 0, NULL),
                (5, 105, 'Budúci', 'Ivan', NULL, 1, 1, 1, 1, %3, NULL),
                (6, 106, 'Minulý', 'Ivan', NULL, 1, 1, 1, 1, 0, %1 - 1);
            INSERT INTO brape (uid, bid, since) VALUES (1, 2, 20), (1, 1, 10);
            INSERT INTO inters VALUES (3, 'D', 'Dovolenka'), (8, 'L', 'Lekár');
            INSERT INTO atten (uid, date, dom, shift, fond, work, diff, saldo_p, ok)
                VALUES (1, %2, 2, 3, 28800, 25200, 3600, 1800, 1),
                (2, %2, 2, 0, 3600, 3541, 59, 0, 1);
            INSERT INTO atten_data (uid, iid, `from`, duration, del)
                VALUES (1, 1000, %2, 60, 0), (1, 1001, %2, 59, 0), (1, 1002, %2, 1800, 0),
                (1, 1002, %2 + 1, 1800, 0), (1, 1003, %3 - 1, 7200, 0), (1, 1003, %3, 9, 0),
                (1, 1004, %2, 7777, 0), (1, 3, %2, 1800, 0), (1, 3, %2, 3600, 0),
                (1, 8, %2, 900, 0), (1, 8, %2, 900, 1), (1, 1, %2, 25200, 0))";
        bench->schema.exec(sql.arg(dayStart(1), dayStart(2), dayStart(3)));
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
