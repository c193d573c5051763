#include "tool/tooltest.h"

/// What the mails of the last days say, in a terminal, as JSON and in a browser.
class TestToolHistory : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    /// Each mail is "day status hour", of November 2023 and by the local clock. The strip is that
    /// of the days up to the 15th; all days before it are not due.
    void strips_data()
    {
        const QString none = "DO 0";
        const QString set = "UPDATE vars SET value = '%1' WHERE name LIKE '%.%2'";
        const QString longAgo = set.arg("1699768802", "lastGenerated"); // the 12th
        addRow("made without a mail", "", none, "×");
        addRow("made", "15 S 7", none, "■");
        addRow("waiting", "15 Q 7", none, "▲");
        addRow("one of two waits", "15 S 7,15 Q 7", none, "▲");
        addRow("refused by the sender", "15 E 7", none, "■");
        addRow("missing days", "11 S 7,14 S 7,15 S 7", none, "■××■■");
        addRow("still to come", "13 S 9,14 S 9",
               set.arg("1699950602", "lastGenerated") + ";\n" + set.arg("09:00", "time"), "■■·");
        addRow("overdue", "12 S 7", longAgo, "■×××");
        addRow("first one overdue", "", set.arg("0", "lastGenerated"), "×");
        addRow("nobody to mail since", "13 S 7",
               set.arg("1699855202", "lastGenerated") + ";\n" + set.arg(" , ", "emails"), "■××");
        addRow("no mails left", "", set.arg("1699941602", "lastGenerated"), "××");
        addRow("off since", "12 S 7", set.arg("0", "enabled"), "■···");
        addRow("made by hand while off", "12 S 7,15 S 9", set.arg("0", "enabled"), "■··■");
        addRow("late in the evening", "14 S 23,15 S 0", none, "■■");
    }

    void strips()
    {
        const auto [mails, change, strip] = fetch<QString, QString, QString>();
        enableBoth();
        bench->schema.exec(change);
        bench->schema.exec("ALTER TABLE vars FORCE"); // forgets when it was written
        info->exec("ALTER TABLE `schemas` FORCE");
        for (const QString &mail : mails.split(',', Qt::SkipEmptyParts)) {
            const QStringList parts = mail.split(' ');
            const QDateTime at(QDate(2023, 11, parts[0].toInt()), QTime(parts[2].toInt(), 0));
            addMail(QString("Denný report dochádzky za %1. 11. 2023").arg(parts[0]), parts[1], at);
            addMail("Mesačný report dochádzky za 11 / 2023", parts[1], at);
        }
        const QStringList lines = run("history").output.split('\n');
        QVERIFY(lines[0].endsWith("  16 Oct                   15 Nov"));
        for (int line : {1, 2})
            QCOMPARE(lines[line].section(' ', -1), strip.rightJustified(31, QChar(0xB7)));
    }

    /// A mail belongs to the day that its subject names, in any language, and else to the local day
    /// on which it was queued.
    void mailsBelongToDays()
    {
        const auto mail = [this](const char *subject, const char *status, const char *utc) {
            addMail(subject, status, QDateTime::fromString(utc, Qt::ISODate));
        };
        // The evening before, and the morning after, summer time ends.
        mail("Mesačný report dochádzky za 10 / 2023", "S", "2023-10-28T20:30:00Z");
        mail("Monthly attendance report of 10 / 2023", "S", "2023-10-28T22:30:00Z");
        mail("Denný report dochádzky za 30. 10. 2023", "S", "2023-10-30T23:01:00Z");
        mail("Daily attendance report of 1. 11. 2023", "Q", "2023-11-01T06:00:00Z");
        mail("Denný report dochádzky za 1. 11. 2023", "X", "2023-11-01T06:00:01Z");
        mail("Denný report dochádzky za 1. 9. 2023", "S", "2023-11-02T06:00:00Z");
        mail("Re: Denný report dochádzky za 3. 11. 2023", "S", "2023-11-03T06:00:00Z");
        const QStringList lines = run("history firm").output.split('\n');
        const QStringList mails{
            "2023-10-30 daily    1 mail sent, queued 2023-10-31 00:01, sent 2023-10-31 00:02",
            "2023-11-01 daily    2 mails: 1 waiting, 1 taken from the queue but not sent, "
            "queued 2023-11-01 07:00",
            "2023-10-28 monthly  1 mail sent, queued 2023-10-28 22:30, sent 2023-10-28 22:31",
            "2023-10-29 monthly  1 mail sent, queued 2023-10-29 00:30, sent 2023-10-29 00:31"};
        QCOMPARE(lines.filter(QRegularExpression("^2.* mails?")), mails);
        const auto expected = QJsonDocument::fromJson(R"({"day": "2023-11-01", "state": "waiting",
            "queued": 2, "waiting": 1, "sent": 0, "unsent": 1,
            "lastQueuedAt": "2023-11-01T07:00:01+01:00", "lastSentAt": null})")
                                  .object();
        const QJsonArray reports = run("history firm --json").json()["reports"].toArray();
        QVERIFY(reports[0].toObject()["days"].toArray().contains(expected));
    }

    void schemasThatCannotBeRead()
    {
        info->addSchemas({"gone"}, "no_such_database");
        bench->schema.exec("DROP TABLE emails");
        const Outcome outcome = run("history");
        QCOMPARE(outcome.status, 1);
        const QRegularExpression expected(
            "\nfirm +daily .* tables +-\nfirm +monthly .*\n"
            "gone +- .* unreachable +-\n(.*\n)*"
            "firm daily: no mail can be queued: table emails: .*\n(.*\n)*"
            "gone: cannot open ");
        QVERIFY2(outcome.output.contains(expected), qPrintable(outcome.output));
        QCOMPARE(run("history firm --html /no/such/page").status, 1);
        const QString page = bench->temporary.filePath("page");
        QCOMPARE(runInShell("ulimit -f 1; \"$@\"", {"history", "--html", page}), 1);
        QVERIFY(!QFile::exists(page));
    }

    /// docs/json.md lists exactly the fields that are printed.
    void jsonIsDocumented()
    {
        const QString page = readFile(AUTOREPORT_JSON_PAGE);
        for (const QString command : {"status", "history", "check"}) {
            QStringList listed;
            const QString section = page.section("## " + command + '\n', 1).section("\n## ", 0, 0);
            for (const QString &line : section.split('\n'))
                listed += captures("`(\\w+)`", line.section('|', 1, 1));
            QStringList printed = captures("\"(\\w+)\": ", run(command + " --json").output);
            printed.removeDuplicates();
            printed.sort();
            listed.sort();
            QCOMPARE(printed, listed);
        }
    }

    void pageInABrowser()
    {
        const QString nasty = "<img src=x onerror=alert(1)>&\"%1\x1b[2J";
        info->addSchemas({nasty, QString(64, 'w')}, bench->schema.name());
        const TestDatabase second(TestDatabase::Tables::Schema);
        info->addSchemas({"broken"}, second.name());
        second.exec("DROP TABLE vars");
        addMail("Denný report dochádzky za 13. 11. 2023", "S", QDate(2023, 11, 13).startOfDay());
        const QString path = bench->temporary.filePath("page.html");
        const Outcome outcome = run("history --html " + path);
        QCOMPARE(outcome.output, path + '\n');
        QCOMPARE(outcome.status, 1);

        // The page as it is: its policy allows only its own script, which sorts.
        const QString page = shown(path, "#sort=-missing", {});
        QVERIFY2(!page.contains("<img") && !page.contains('\x1b'), qPrintable(page));
        QVERIFY(page.contains("<th scope=\"row\">&lt;img src=x onerror=alert(1)&gt;&amp;\"%1" +
                              QString(QChar::ReplacementCharacter)));
        QCOMPARE(orderOf(page).first(), QString("2"));
        QCOMPARE(orderOf(page).last(), QString("0"));
        QCOMPARE(page.count("aria-sort=\"descending\""), 1);
        QVERIFY(page.contains("href=\"#sort=missing\""));
        const QString unsorted = shown(path, QString(), {});
        QVERIFY(orderOf(unsorted) != orderOf(page));
        QCOMPARE(unsorted.count("<tr data-"), 7);
        QVERIFY(unsorted.contains("<title>13 Nov: 1 mail sent</title>"));
        QVERIFY(unsorted.indexOf("<b>broken</b>") < unsorted.indexOf("<table>"));

        // On a telephone, where nothing needs scrolling to the side, and in the dark.
        const QString probe = withProbe(path);
        const QString telephone = shown(probe, QString(), {"--window-size=360,740"});
        QVERIFY2(telephone.contains(">360 360 wide strip, rgb(255, 255, 255)</title>"),
                 qPrintable(telephone.left(400)));
        const QString dark =
            shown(probe, QString(),
                  {"--window-size=1280,800", "--blink-settings=preferredColorScheme=0"});
        QVERIFY(dark.contains(">1280 1280 wide strip, rgb(20, 23, 26)</title>"));
    }

private:
    void addMail(const QString &subject, const QString &status, const QDateTime &at) const
    {
        const qint64 seconds = at.toSecsSinceEpoch();
        const QString sent = status == "S" ? QString::number(seconds + 60) : QString("NULL");
        bench->schema.exec(
            QString("INSERT INTO emails (status, `from`, `to`, subject, created, sent) "
                    "VALUES ('%1', 'a', 'b', '%2', %3, %4)")
                .arg(status, subject, QString::number(seconds), sent));
    }

    static QStringList captures(const QString &pattern, const QString &text)
    {
        QStringList found;
        const QRegularExpression expression(pattern);
        for (auto match = expression.globalMatch(text); match.hasNext();)
            found.append(match.next().captured(1));
        return found;
    }

    /// Returns the document as the browser has it once its scripts have run.
    QString shown(const QString &path, const QString &fragment, const QStringList &options) const
    {
        QProcess browser;
        browser.start(
            AUTOREPORT_BROWSER,
            QStringList{"--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                        "--user-data-dir=" + bench->temporary.filePath("browser"), "--dump-dom"} +
                options + QStringList(QUrl::fromLocalFile(path).toString() + fragment));
        const bool ended = browser.waitForFinished(patienceMs);
        return ended ? QString::fromUtf8(browser.readAllStandardOutput()) : QString();
    }

    /// Returns how many days are missing, row by row.
    static QStringList orderOf(const QString &page)
    {
        return captures("data-missing=\"(\\d+)\"", page);
    }

    /// Returns a copy of the page with a script that puts its measures into the title; the policy
    /// for styles stays.
    QString withProbe(const QString &path) const
    {
        QString page = readFile(path);
        page.replace(QRegularExpression("script-src '[^']+'"), "script-src 'unsafe-inline'");
        page.replace("</body>", R"(<script>
            const strip = document.querySelector('.strip').getBoundingClientRect().width;
            document.title = [document.documentElement.scrollWidth, innerWidth,
                strip > 300 ? 'wide strip,' : strip,
                getComputedStyle(document.body).backgroundColor].join(' ');</script></body>)");
        const QString copy = bench->temporary.filePath("probe.html");
        writeFile(copy, page.toUtf8());
        return copy;
    }
};

QTEST_GUILESS_MAIN(TestToolHistory)
#include "tst_toolhistory.moc"
