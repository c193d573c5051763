#include "host/hosttest.h"

/// From the host's start to the queued mail, at critical moments and in both languages.
class TestFakedMoment : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void bothReports_data()
    {
        const auto slovak = [](const char *day, const QString &monthly, const QString &daily) {
            addRow(day, "sk", "Mesačný report dochádzky za " + monthly,
                   "Denný report dochádzky za " + daily);
        };
        slovak("2023-11-15", "11 / 2023", "15. 11. 2023");
        slovak("2024-03-31", "3 / 2024", "31. 3. 2024"); // of 23 hours
        slovak("2024-01-01", "1 / 2024", "1. 1. 2024");
        slovak("2024-12-01", "12 / 2024", "1. 12. 2024");
        addRow("2023-10-30", "en", "Monthly attendance report of 10 / 2023",
               "Daily attendance report of 30. 10. 2023");
    }

    /// Due in the same minute, each goes out once; the operator's preview, made today, is the same.
    void bothReports()
    {
        const auto [language, monthly, daily] = fetch<QString, QString, QString>();
        const QDate today = QDate::fromString(QTest::currentDataTag(), Qt::ISODate);
        const QDateTime moment(today, QTime(7, 0, 5));
        fillCompany(today);
        serveAt(moment, language);

        const QJsonObject days = readSheet(bench->file("DennyReport", today));
        QCOMPARE(rowCount(days), 1 + people * today.day());
        for (int row = 0; row < people * today.day(); ++row) {
            const QJsonArray cells = sheetRow(days, 2 + row);
            const int uid = 1 + row % people;
            const int day = 1 + row / people;
            QCOMPARE(cells[0].toInt(), 100 + uid);
            QCOMPARE(cells[6].toInt(), day);
            QCOMPARE(cells[7].toString(), QTime(uid, 9 + day).toString("HH:mm:ss"));
            QCOMPARE(cells[13].toString(), QTime(0, day).toString("HH:mm:ss"));
        }
        const QString sql = "SELECT GROUP_CONCAT(`to`, ': ', subject ORDER BY mid SEPARATOR '|') "
                            "FROM emails";
        const QString mails("a@firma.sk: %1|b@firma.sk: %1|a@firma.sk: %2|b@firma.sk: %2");
        QCOMPARE(bench->schema.value(sql).toString(), mails.arg(monthly, daily));
        for (const char *report : {"DailyAtten", "MonthlyAtten"}) {
            const auto late = bench->lastGenerated(report).toLongLong() - moment.toSecsSinceEpoch();
            QVERIFY2(late >= 0 && late <= served, report);
        }

        const auto before = bench->schema.rows("CHECKSUM TABLE vars, emails");
        const QJsonObject month = readSheet(bench->file("MesReportDochadzky", today));
        QCOMPARE(rowCount(month), 1 + people);
        QCOMPARE(cellValue(month, "C10").toDouble(), double(people));
        QCOMPARE(preview("daily", today, language), days);
        QCOMPARE(preview("monthly", today, language), month);
        QCOMPARE(bench->schema.rows("CHECKSUM TABLE vars, emails"), before);

        const QString name = days["name"].toString().replace(today.toString("MM-yyyy"), "%1");
        QCOMPARE(month["name"].toString(), QString("Mes. report dochádzky")); // in both
        const QStringList known = textsIn(language);
        for (const auto &texts : {sheetRow(days, 1), sheetRow(month, 1), QJsonArray{name}}) {
            for (const QJsonValue text : texts)
                QVERIFY2(known.contains(text.toString()), qPrintable(text.toString()));
        }
    }

private:
    static constexpr int people = 9;
    static constexpr int speed = 20; // of the host's clock
    qint64 served = 0;               // seconds of that clock

    /// Fills the month up to `today`. Each penalty is in the last second of its day, which a day
    /// of a wrong length would not include.
    void fillCompany(const QDate &today) const
    {
        addPeople(bench->schema, people);
        const QString attendance = R"(
            INSERT INTO atten (uid, date, dom, work)
                SELECT uid, %2, %1, uid * 3600 + (9 + %1) * 60 FROM people;
            INSERT INTO atten_data (uid, iid, `from`, duration)
                SELECT uid, 1002, %3 - 1, %1 * 60 FROM people)";
        for (int day = 1; day <= today.day(); ++day) {
            const QDateTime start = QDate(today.year(), today.month(), day).startOfDay();
            bench->schema.exec(attendance.arg(day)
                                   .arg(start.toSecsSinceEpoch())
                                   .arg(start.date().addDays(1).startOfDay().toSecsSinceEpoch()));
        }
        bench->schema.exec("INSERT INTO atten_month (uid, month, fond) SELECT uid, " +
                           today.toString("yyyyMM") + ", uid * 3600 FROM people");
        enableBothReports(bench->schema, "a@firma.sk, b@firma.sk");
        bench->set("autoReport.DailyAtten.time", "07:00");
        bench->set("autoReport.MonthlyAtten.time", "07:00");
        bench->set("dattenInters", "1");
    }

    /// Runs a host for at least two ticks; its clock runs fast, so that the second comes soon.
    void serveAt(const QDateTime &at, const QString &language)
    {
        QElapsedTimer timer;
        timer.start();
        environment = TestServer::environment(at.toString("yyyy-MM-dd HH:mm:ss' x%1'").arg(speed));
        serveSingle({"--language", language, "--debug", "1"});
        const bool ticked = program->logs("activateReports()", 2);
        QVERIFY(program->stops());
        environment = TestServer::environment();
        served = timer.elapsed() * speed / 1000 + 1;
        QVERIFY2(ticked && !program->log.contains("CRITICAL"), qPrintable(program->log));
    }

    QJsonObject preview(const QString &kind, const QDate &day, const QString &language) const
    {
        const QString file = bench->temporary.filePath(kind + ".xlsx");
        const QString date = day.toString(Qt::ISODate);
        const QString line("preview %1 %2 --single --db-name %1 --date %3 --language %4 --out %5");
        const Outcome outcome = run(line.arg(bench->schema.name(), kind, date, language, file));
        return outcome.status == 0 ? readSheet(file) : QJsonObject();
    }

    /// Returns all texts in that language; any other text bypasses the translation.
    static QStringList textsIn(const QString &language)
    {
        QStringList texts;
        QXmlStreamReader xml(readFile(AUTOREPORT_TRANSLATION));
        while (!xml.atEnd()) {
            if (xml.readNextStartElement() &&
                xml.name() == (language == "sk" ? "source" : "translation"))
                texts << xml.readElementText();
        }
        return texts;
    }
};

QTEST_GUILESS_MAIN(TestFakedMoment)
#include "tst_fakedmoment.moc"
