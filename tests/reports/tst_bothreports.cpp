#include "reports/dailyattenreport.h"
#include "reports/monthlyattenreport.h"
#include "reports/reportrun.h"

#include "support/reportbench.h"
#include "support/testhost.h"

/// What both reports have in common: their mails, and errors, which are logged and keep back no
/// more of a report than they must.
class TestBothReports : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void mails_data()
    {
        const QString automatic =
            "%1 report dochádzky sa nachádza v prílohe.\n\n\nTento e-mail bol vygenerovaný "
            "automaticky dochádzkovým systémom ZAS%2.";
        const QString daily = automatic.arg("Denný", " (modul AutoReport)");
        addRow("daily", 0, "DennyReport", daily, "1");
        addRow("daily as .xls", 0, "DennyReport", daily, "0");
        addRow("monthly", 2, "MesReportDochadzky", automatic.arg("Mesačný", ""), "0");
    }

    void mails()
    {
        // `mail` is the place in the queue, `xlsx` the daily report's setting "exportUseXLSX".
        const auto [mail, report, body, xlsx] = fetch<int, QString, QString, QString>();
        bench->set("globalEmail", "mzdy@firma.sk");
        bench->set("exportUseXLSX", xlsx);
        const bool binary = mail == 0 && xlsx == "0";
        const QString path = bench->file(report, QDate(2023, 11, 1), binary ? "xls" : "xlsx");
        bench->schema.exec(
            "CREATE TRIGGER refuse BEFORE INSERT ON emails FOR EACH ROW IF NEW.`to` = "
            "'no@firma.sk' THEN SIGNAL SQLSTATE '45000'; END IF");
        makeBoth({"a@firma.sk", " ", "no@firma.sk", " b@firma.sk "});

        const auto queued = bench->schema.rows("SELECT body, `from`, `to`, type, status, aid, "
                                               "uid IS NULL, data FROM emails ORDER BY mid");
        QCOMPARE(queued.size(), 4);
        QCOMPARE(queued.at(mail).at(0).toString(), body);
        QCOMPARE(queued.at(mail).mid(1, 6),
                 (QVariantList{"mzdy@firma.sk", "a@firma.sk", "E", "Q", 0, 1}));
        QCOMPARE(queued.at(mail + 1).at(2).toString(), QString("b@firma.sk"));
        const QString refused("DailyAttenReport::makeReport() - mail not created!");
        QCOMPARE(bench->log.count(QtWarningMsg, refused), 1);
        QVERIFY(bench->lastGenerated("DailyAtten").isValid());

        const QByteArray data = queued.at(mail).at(7).toByteArray();
        QVERIFY(data.startsWith("{\n    \"attachments\": [\n"));
        const QJsonObject attachment{
            {"type", binary ? "application/vnd.ms-excel"
                            : "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"},
            {"name", QFileInfo(path).fileName()},
            {"content", QString(readFile(path).toBase64())}};
        QCOMPARE(QJsonDocument::fromJson(data).object(),
                 QJsonObject({{"attachments", QJsonArray{attachment}}}));
    }

    void nobody()
    {
        enableBothReports(bench->schema, "");
        DailyAttenReport(bench->database, nullptr).doWork();
        MonthlyAttenReport(bench->database, nullptr).doWork();
        for (const QString report : {"DailyAttenReport", "MonthlyAttenReport"})
            QCOMPARE(bench->log.count(QtWarningMsg, report + " - no e-mail addresses!"), 1);
    }

    void goOutAllTheSame_data()
    {
        const QString daily = "DailyAttenReport::makeReport() %1 SQL error: ";
        const QString monthly = "MonthlyAttenReport::makeReport() %1 ERROR: ";
        const QString pseudo = daily.arg("pseudo inters");
        const QString inters = daily.arg("inters");
        addRow("branches", "DROP TABLE brape", QStringList(daily.arg("branch")));
        addRow("shifts", "ALTER TABLE atten DROP shift",
               QStringList("DailyAttenReport::loadShiftsForMonth failed: "));
        // Some columns are selected but not used; without them the statements still fail.
        addRow("attendance", "ALTER TABLE atten DROP expFund",
               QStringList{daily.arg("atten"), daily.arg("atten")});
        addRow("overtime", "ALTER TABLE atten DROP ok",
               QStringList{daily.arg("overtime"), daily.arg("overtime")});
        addRow("corrections", "ALTER TABLE atten_data DROP duration",
               QStringList{pseudo, inters, pseudo, inters, monthly.arg("atten_data")});
        addRow("inters", "DROP TABLE inters", QStringList{inters, inters, monthly.arg("inters")});
        addRow("totals", "ALTER TABLE atten_month DROP work",
               QStringList{monthly.arg("atten_month"), monthly.arg("work")});
        const QString wrong = R"(
            ALTER TABLE atten MODIFY fond TEXT, MODIFY work TEXT, MODIFY diff TEXT,
                MODIFY shift TEXT, MODIFY ok INT NULL;
            ALTER TABLE atten_month MODIFY fond TEXT, MODIFY work TEXT, MODIFY night TEXT;
            ALTER TABLE atten_data MODIFY duration TEXT, MODIFY iid INT NULL;
            INSERT INTO atten (uid, date, dom, shift, fond, work, diff, ok)
                VALUES (1, %1, 1, %2, %2, %2, %2, 1);
            INSERT INTO atten_month (uid, month, fond, work, night) VALUES (1, 202311, %2, %2, %2);
            INSERT INTO atten_data (uid, iid, `from`, duration)
                VALUES (1, 1002, %1, %2), (1, 3, %1, %2), (1, NULL, %1, %2))";
        const QString day = QString::number(QDate(2023, 11, 1).startOfDay().toSecsSinceEpoch());
        for (const char *value : {"NULL", "'sedem'", "'-9e18'", "'1e300'", "'inf'"})
            addRow(value, wrong.arg(day, value), QStringList());
    }

    void goOutAllTheSame()
    {
        const auto [statements, warnings] = fetch<QString, QStringList>(); // how each begins
        bench->schema.exec(statements);
        makeBoth();
        const QStringList found = bench->log.texts(QtWarningMsg);
        QCOMPARE(found.size(), warnings.size());
        for (int i = 0; i < found.size(); ++i)
            QVERIFY2(found[i].startsWith(warnings[i]), qPrintable(found[i]));
        checkBothWentOut();
        QCOMPARE(cellValue(readSheet(file("DennyReport")), "I2"), QJsonValue());
        const QJsonValue fund = statements.contains("1e300") ? 1e300 / 3600 : QJsonValue();
        QCOMPARE(cellValue(readSheet(file("MesReportDochadzky")), "C2"), fund);
    }

    void noMail_data()
    {
        // If the queue refuses every mail, the monthly report still counts as made.
        const char *unsaved = "%1 - XLS not saved!";
        addRow("people query", "DROP TABLE people", "%1::makeReport() people SQL ", false);
        addRow("no people", "DELETE FROM people", "%1 - no people!", false);
        addRow("the file is a folder", "DO 0", unsaved, false);
        addRow("missing folder", "DO 0", unsaved, false);
        const char *lost = "%1::makeReport() - database connection lost, no mail queued!";
        addRow("connection lost while it reads", R"(
            CREATE FUNCTION lose() RETURNS INT BEGIN KILL CONNECTION_ID(); RETURN 0; END;
            ALTER TABLE atten_data RENAME records;
            CREATE VIEW atten_data AS SELECT uid, iid, `from`, duration, lose() del FROM records;
            INSERT INTO records (uid, iid, `from`) VALUES (1, 3, 1698793200))",
               lost, false);
        addRow("connection lost while it queues",
               "CREATE TRIGGER lose BEFORE INSERT ON emails FOR EACH ROW KILL CONNECTION_ID()",
               lost, false);
        const char *refused = "%1::makeReport() - mail not created!";
        addRow("above the packet limit", R"(
            SET GLOBAL max_allowed_packet = 16384;
            INSERT INTO people (uid, pid, name, surname)
                SELECT seq, seq, 'Ján', seq FROM seq_3_to_2000)",
               refused, false);
        addRow("queue refuses", "ALTER TABLE emails DROP subject", refused, true);
    }

    void noMail()
    {
        const auto [statement, line, counts] = fetch<QString, QString, bool>();
        bench->schema.exec(statement);
        const QByteArray row = QTest::currentDataTag();
        const QDir root;
        if (row == "missing folder")
            qputenv("TMPDIR", "/no/such");
        else if (row == "the file is a folder")
            QVERIFY(root.mkpath(file("DennyReport")) && root.mkpath(file("MesReportDochadzky")));
        bench->database.close();
        QVERIFY(bench->database.open()); // with the packet limit of now
        makeBoth();
        bench->schema.exec("SET GLOBAL max_allowed_packet = 67108864");
        const QRegularExpression why("'/.+\\.xlsx': (Is a|No such file or) directory$");
        for (const char *report : {"DailyAttenReport", "MonthlyAttenReport"}) {
            QCOMPARE(bench->log.countContaining(line.arg(report)), 1);
            const QStringList lines = bench->log.texts(QtWarningMsg).filter(report).filter(why);
            QCOMPARE(lines.size(), line.endsWith("XLS not saved!") ? 1 : 0);
        }
        QCOMPARE(bench->mails(), 0);
        QVERIFY(!bench->lastGenerated("DailyAtten").isValid());
        QCOMPARE(bench->lastGenerated("MonthlyAtten").isValid(), counts);
    }

    void names_data()
    {
        for (const char *kept : {"O'Brien \"Jano\" \\", "%1 %2 %s", "=1+1", "_x0041_ & <b>"})
            addRow(kept, kept, kept);
        addRow("emoji, of which the driver has no notion", "EMOJI", "?");
        addRow("control character", "Já\x01n", "Ján");
        addRow("longer than a cell", QString(32768, 'x'), QString());
    }

    void names()
    {
        auto [name, shown] = fetch<QString, QString>(); // shown: null for an empty cell
        bench->schema.exec("ALTER TABLE people MODIFY name TEXT");
        name.replace('\\', "\\\\").replace('\'', "\\'");
        bench->schema.exec("UPDATE people SET surname = '', name = REPLACE('" + name +
                           "', 'EMOJI', CONVERT(UNHEX('F09F9880') USING utf8mb4))");
        makeBoth();
        checkBothWentOut();
        for (const char *report : {"DennyReport", "MesReportDochadzky"})
            QCOMPARE(cellValue(readSheet(file(report)), "B2"),
                     shown.isNull() ? QJsonValue() : QJsonValue(shown));
    }

    void manyRecipients()
    {
        QStringList recipients;
        for (int i = 0; recipients.size() * 20 < 65536; ++i)
            recipients << QString("prijemca%1@firma.sk").arg(i, 4, 10, QChar('0'));
        enableDailyReport(bench->schema, recipients.join(','));
        DailyAttenReport(bench->database, nullptr).doWork();
        QCOMPARE(bench->mails(), recipients.size());
    }

    /// The heading takes one of the 65,536 rows.
    void moreRowsThanXlsHas()
    {
        const QString path = bench->temporary.filePath("p.xls");
        const ReportRun run{{}, QDateTime(QDate(2023, 11, 1), QTime(7, 0))};
        for (const int people : {65536, 65535}) {
            bench->schema.exec("DELETE FROM people");
            addPeople(bench->schema, people);
            const bool saved = DailyAttenReport(bench->database, nullptr).saveWorkbook(path, run);
            QCOMPARE(saved, people == 65535);
            QCOMPARE(QFile::exists(path), saved);
        }
        const QString line = "DailyAttenReport - 65536 rows are more than the 65535 that .xls can "
                             "hold; .xlsx can hold 1048575";
        QCOMPARE(bench->log.count(QtCriticalMsg, line), 1);
    }

private:
    void prepare() override
    {
        addPeople(bench->schema, 2);
        bench->set("dattenInters", "1");
        bench->set("monthAttenInterrupts", "SC");
    }
    /// On the first of a month, when both reports show the same day.
    void makeBoth(const QStringList &emails = {"a@firma.sk"})
    {
        const QDateTime now(QDate(2023, 11, 1), QTime(7, 0));
        DailyAttenReport(bench->database, nullptr).makeReport(emails, now);
        MonthlyAttenReport(bench->database, nullptr).makeReport(emails, now);
    }
    QString file(const QString &report) const { return bench->file(report, QDate(2023, 11, 1)); }
    void checkBothWentOut() const
    {
        QCOMPARE(bench->mails(), 2);
        for (const char *report : {"DennyReport", "MesReportDochadzky"})
            QCOMPARE(rowCount(readSheet(file(report))), 3);
        QVERIFY(bench->log.texts(QtCriticalMsg).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBothReports)
#include "tst_bothreports.moc"
