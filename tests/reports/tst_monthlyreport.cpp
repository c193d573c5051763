#include "reports/monthlyattenreport.h"

#include "support/reportbench.h"

class TestMonthlyReport : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void sheet_data()
    {
        // A setting (key=value), what differs in the first person's row (column: value), and the
        // headings between column U and the last one.
        const QDate leap(2024, 2, 1);
        const QString trip = "Služobná cesta";
        addRow("payroll number, 25-hour day", october, "monthAttenUsePamID=1", "{}", QStringList());
        addRow("leap February, one extra", leap, "monthAttenInterrupts=SC", R"({"V": 1.25})",
               QStringList(trip));
        addRow("three extras, one unknown, one blank", october, "monthAttenInterrupts=SC,??, D",
               R"({"V": 1.25})", QStringList{trip, "", ""});
        addRow("advanced overtime 1", leap, "advancedOvertime=1", R"({"J": 1})", QStringList());
        addRow("advanced overtime 2 is 0", leap, "advancedOvertime=2", "{}", QStringList());
    }

    void sheet()
    {
        const auto [month, option, first, extras] = fetch<QDate, QString, QString, QStringList>();
        bench->set(option.section('=', 0, 0), option.section('=', 1));
        const QJsonObject sheet = sheetOf(month);

        const bool payroll = option.contains("PamID");
        const QString fixed =
            "Priezvisko a meno|Plánovaný mesačný fond|Dovolenka|Lekár|PN|Paragraf|OČR|NV|Nadčas|"
            "Skutočne odpracované hodiny|Rozdiel|Odpracované hodiny v %|Navrhnuté prémie|"
            "Výsledné prémie|Sviatok|Odpracovaný sviatok|Príplatkový čas|Sobota|Nedeľa|Nočná";
        const QStringList headings = QStringList(payroll ? "PamID" : "ID") + fixed.split('|') +
                                     extras + QStringList("Stravné j.");
        QCOMPARE(sheetRow(sheet, 1), QJsonArray::fromStringList(headings));

        // Without a fund, only the difference is shown; 0 hours are shown, a sum of 0 is not.
        const QHash<int, QString> rows{
            {1, R"json({"C": 160, "D": 2, "E": 1, "F": 2, "G": 0.25, "H": 0.125, "I": 0.01, "J": 5,
            "K": 165, "M": "=K2/(C2/100)", "O": "=N2*(K2/100)", "P": 8, "Q": 0.5, "R": 1.125, "S": 2,
            "T": 3, "U": 4})json"},
            {2, R"({"K": 0})"},
            {3, R"json({"C": 10, "K": 0, "M": "=K4/(C4/100)", "O": "=N4*(K4/100)"})json"}};
        const QHash<int, QString> leavers{{60, "Ukončený Ivan"}, {63, "Ukončený Adam"}};
        QCOMPARE(rowCount(sheet), 62);
        for (int person = 1; person <= 61; ++person) {
            const int uid = person == 60 ? 63 : person == 61 ? 60 : person;
            QJsonArray expected =
                rowOf(headings.size(), rows.value(uid, "{}"), uid == 1 ? first : "{}");
            expected[0] = payroll ? QJsonValue(QString("P%1").arg(uid)) : QJsonValue(100 + uid);
            const QString name = QString("Priezvisko%1 Ján").arg(uid, 2, 10, QChar('0'));
            expected[1] = leavers.value(uid, uid == 1 ? name + " Ing." : name);
            expected[11] = QString("=K%1-C%1").arg(person + 1);
            expected[headings.size() - 1] = uid == 1 ? QJsonValue(20) : QJsonValue();
            QCOMPARE(sheetRow(sheet, person + 1), expected);
        }
    }

    void layout()
    {
        bench->set("monthAttenInterrupts", "SC,??");
        const QJsonObject sheet = sheetOf(october);
        QCOMPARE(sheet.value("name").toString(), QString("Mes. report dochádzky"));
        const QString font = "MS Shell Dlg 2 10";
        QHash<QString, QString> looks{{"X1", " bold, center bottom, General, medium auto"},
                                      {"A2", ", right center, General, thin FF000000"},
                                      {"B2", ", left top wrap, #0.00, thin FF000000"}};
        for (const char *cell : {"C2", "L2", "N2", "C5", "W5", "X5"})
            looks[cell] = ", center top wrap, #0.00, thin FF000000";
        for (auto look = looks.cbegin(); look != looks.cend(); ++look)
            QCOMPARE(cellValue(sheet, look.key(), "look"), QJsonValue(font + look.value()));
        QCOMPARE(widths(sheet),
                 QString("A10 B20 C23 D12 K28 M24 N18 O18 P18 Q24 R18 S18 T18 V16 W2 X12"));
        QCOMPARE(sheet.value("rowHeights").toObject(), QJsonObject({{"1", 16}}));
        QVERIFY(!sheet.value("showGridLines").toBool());
        checkPage(sheet);
    }

    void interruptionMaps()
    {
        bench->schema.exec("INSERT INTO inters VALUES (3, 'D', 'Dovolenka'), (8, 'L ', 'Lekár')");
        MonthlyAttenReport report(bench->database, nullptr);
        QHash<unsigned, QString> names{{8, "?"}, {9, "NV"}};
        QHash<QString, unsigned> ids;
        QVERIFY(report.loadInterruptionMaps(names, ids));
        bench->schema.exec("DROP TABLE inters");
        QVERIFY(!report.loadInterruptionMaps(names, ids));
        QCOMPARE(names, (QHash<unsigned, QString>{{3, "Dovolenka"}, {8, "Lekár"}, {9, "NV"}}));
        QCOMPARE(ids, (QHash<QString, unsigned>{{"D", 3}, {"L ", 8}}));
        const QString warning = "MonthlyAttenReport::loadInterruptionMaps() ERROR: ";
        QCOMPARE(bench->log.texts(QtWarningMsg).filter(warning).size(), 1);
    }

private:
    inline static const QDate october{2024, 10, 1}; // has a day of 25 hours

    /// The sheet of sixty people of the month, and some who must not be in it. The first has all
    /// kinds of values, the second a row of zeros, the third a NULL, the fourth no row of the
    /// month. Of the others, two were not employed in the month, two are inactive, and one is
    /// anonymous.
    QJsonObject sheetOf(const QDate &month) const
    {
        const auto start = [&month](int months) {
            return QString::number(month.addMonths(months).startOfDay().toSecsSinceEpoch());
        };
        const QString sql = R"(
            INSERT INTO people (uid, pid, pamId, surname, name, title)
                SELECT seq, seq + 100, CONCAT('P', seq), CONCAT('Priezvisko', LPAD(seq, 2, '0')),
                'Ján', IF(seq = 1, 'Ing. ', NULL) FROM seq_1_to_59;
            INSERT INTO people (uid, pid, pamId, surname, name, begin, end)
                VALUES (60, 160, 'P60', 'Ukončený', 'Ivan', 0, %1),
                (61, 161, 'P61', 'Ukončený', 'Skôr', 0, %1 - 1),
                (62, 162, 'P62', 'Začne', 'Neskôr', %2, NULL),
                (63, 163, 'P63', 'Ukončený', 'Adam', %2 - 1, %2);
            INSERT INTO people (uid, pid, pamId, surname, name, status)
                VALUES (64, 164, 'P64', 'Bývalý', 'Ivan', 0), (65, 165, 'P65', 'Bývalý', 'Ivan', 2),
                (66, 166, 'P66', 'Skrytý', '<anonym>', 1);
            INSERT INTO inters
                VALUES (3, 'D', 'Dovolenka'), (20, 'SC', 'Služobná cesta'), (21, 'X ', 'Iné');
            ALTER TABLE atten_month MODIFY work DOUBLE NULL;
            INSERT INTO atten_month (uid, month, fond, work, saldo_p, totalSaldo, holidayFond,
                holidaySum, bonus, day6sum, day7sum, night, vouchers)
                VALUES (1, %3, 576000, 594000, 3600, 18000, 28800, 1800, 4050, 7200, 10800, 14400,
                20),
                (2, %3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0),
                (3, %3, 36000, NULL, 0, -3600, 0, 0, 0, 0, 0, 0, 0),
                (4, %3 - 1, 36000, 36000, 0, 0, 0, 0, 0, 0, 0, 0, 9);
            INSERT INTO atten_data (uid, iid, `from`, duration, del)
                VALUES (1, 3, %1, 1800, 0), (1, 3, %2 - 1, 5400, 0), (1, 8, %1, 3600, 0),
                (1, 15, %1, 7200, 0), (1, 7, %1, 900, 0), (1, 14, %1, 450, 0), (1, 9, %1, 36, 0),
                (1, 20, %1, 4500, 0), (1, 3, %2, 9999, 0), (1, 3, %1, 9999, 1),
                (1, 1, %1, 9999, 0), (1, 1000, %1, 9999, 0), (2, 3, %1, 3600, 0),
                (2, 3, %1, -3600, 0))";
        bench->schema.exec(sql.arg(start(0), start(1), month.toString("yyyyMM")));
        MonthlyAttenReport(bench->database, nullptr)
            .makeReport({"a@firma.sk"}, QDateTime(month.addDays(27), QTime(7, 0, 5)));
        return readSheet(bench->file("MesReportDochadzky", month));
    }
};

QTEST_GUILESS_MAIN(TestMonthlyReport)
#include "tst_monthlyreport.moc"
