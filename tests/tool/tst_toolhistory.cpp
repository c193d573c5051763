#include "tool/tooltest.h"

#include <QFile>
#include <QRegularExpression>
#include <QUrl>

/// What the mails of the last days say, in a terminal, as JSON and in a browser.
class TestToolHistory : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    /// Each mail is "day status hour", of November 2023 and by the local clock. The strip is that
    /// of the days up to the 15th; all days before it are not due.
    void strips_data()
    {
        addColumns<QString, QString, QString>("mails", "change", "strip");
        const QString none = "DO 0";
        const QString set = "UPDATE vars SET value = '%1' WHERE name LIKE '%.%2'";
        const QString longAgo = set.arg("1699768802", "lastGenerated"); // the 12th
        addRow("nothing yet", "", none, "·");
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
        QFETCH(QString, mails);
        QFETCH(QString, change);
        QFETCH(QString, strip);
        bench->schema.exec("INSERT INTO vars SELECT REPLACE(name, 'Daily', 'Monthly'), value FROM "
                           "vars");
        bench->schema.exec(change);
        bench->schema.exec("ALTER TABLE vars FORCE"); // forgets when it was written
        for (const QString &mail : mails.split(',', Qt::SkipEmptyParts)) {
            const QStringList parts = mail.split(' ');
            const QDateTime at(QDate(2023, 11, parts[0].toInt()), QTime(parts[2].toInt(), 0));
            addMail(QString("Denný report dochádzky za %1. 11. 2023").arg(parts[0]), parts[1], at);
            addMail("Mesačný report dochádzky za 11 / 2023", parts[1], at);
        }
        const Outcome outcome = run("history");
        QCOMPARE(outcome.errors, QString());
        const QStringList lines = outcome.output.split('\n');
        QVERIFY(lines[0].endsWith("  16 Oct                   15 Nov"));
        for (int line : {1, 2})
            QCOMPARE(lines[line].section(' ', -1), strip.rightJustified(31, QChar(0xB7)));
    }

    /// A mail belongs to the day that its subject names, in any language, and else to the local day
    /// on which it was queued.
    void mailsBelongToDays()
    {
        const auto utc = [](const char *text) {
            return QDateTime::fromString(text, Qt::ISODate);
        };
        // The evening before, and the morning after, summer time ends.
        addMail("Mesačný report dochádzky za 10 / 2023", "S", utc("2023-10-28T20:30:00Z"));
        addMail("Monthly attendance report of 10 / 2023", "S", utc("2023-10-28T22:30:00Z"));
        addMail("Denný report dochádzky za 30. 10. 2023", "S", utc("2023-10-30T23:01:00Z"));
        addMail("Daily attendance report of 1. 11. 2023", "Q", utc("2023-11-01T06:00:00Z"));
        addMail("Denný report dochádzky za 1. 11. 2023", "X", utc("2023-11-01T06:00:01Z"));
        addMail("Denný report dochádzky za 1. 9. 2023", "S", utc("2023-11-02T06:00:00Z"));
        addMail("Re: Denný report dochádzky za 3. 11. 2023", "S", utc("2023-11-03T06:00:00Z"));
        QStringList found;
        for (const auto &report : jsonOf("history firm --json").value("reports").toArray()) {
            for (const auto &value : report.toObject().value("days").toArray()) {
                const QJsonObject day = value.toObject();
                if (day.value("queued").toInt() > 0)
                    found << QString("%1 %2 %3-%4-%5")
                                 .arg(day.value("day").toString(), day.value("state").toString())
                                 .arg(day.value("sent").toInt())
                                 .arg(day.value("waiting").toInt())
                                 .arg(day.value("unsent").toInt());
            }
        }
        QCOMPARE(found.join('|'), QString("2023-10-30 made 1-0-0|2023-11-01 waiting 0-1-1|"
                                          "2023-10-28 made 1-0-0|2023-10-29 made 1-0-0"));
        const Outcome outcome = run("history firm");
        QVERIFY2(
            outcome.output.contains("\n2023-11-01 daily    2 mails: 1 waiting, 1 taken but not "
                                    "sent, queued 2023-11-01 07:00\n"),
            qPrintable(outcome.output));
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
        QCOMPARE(run("history frim").errors.section('\n', 1, 1), QString("Perhaps meant: firm"));
        QCOMPARE(run("history firm --html /no/such/page").status, 1);
        QCOMPARE(run("history --json --html x").status, 2);
    }

    void jsonIsDocumented_data()
    {
        addColumns<QString>("command");
        for (const char *command : {"status", "history", "check"})
            addRow(command, QString(command));
    }

    /// docs/json.md lists exactly the fields that are printed.
    void jsonIsDocumented()
    {
        QFETCH(QString, command);
        const QString section = QString::fromUtf8(readFile(AUTOREPORT_JSON_PAGE))
                                    .section("## " + command + '\n', 1)
                                    .section("\n## ", 0, 0);
        QSet<QString> listed;
        const QRegularExpression name("`(\\w+)`");
        for (const QString &line : section.split('\n')) {
            for (auto match = name.globalMatch(line.section('|', 1, 1)); match.hasNext();)
                listed.insert(match.next().captured(1));
        }
        QSet<QString> printed;
        collectFields(jsonOf(command + " --json"), printed);
        QVERIFY(printed.size() > 4);
        QCOMPARE((listed - printed).values(), QStringList());
        QCOMPARE((printed - listed).values(), QStringList());
    }

    void pageInABrowser()
    {
        const QString nasty = "<img src=x onerror=alert(1)>&\"%1\x1b[2J";
        info->addSchemas({nasty, QString(64, 'w')}, bench->schema.name());
        const TestDatabase second(TestDatabase::Tables::Schema);
        info->addSchemas({"broken"}, second.name());
        second.exec("DROP TABLE vars");
        addMail("Denný report dochádzky za 13. 11. 2023", "S",
                QDateTime(QDate(2023, 11, 13), {7, 0}));
        const QString path = bench->temporary.filePath("page.html");
        const Outcome outcome = run("history --html " + path);
        QCOMPARE(outcome.output, path + '\n');
        QCOMPARE(outcome.status, 1);

        // As it is: the policy lets its own script sort, and nothing else.
        const QString page = shown(path, "#sort=-missing", {});
        QVERIFY2(!page.contains("<img") && !page.contains('\x1b'), qPrintable(page));
        QVERIFY(page.contains("<th scope=\"row\">&lt;img src=x onerror=alert(1)&gt;&amp;\"%1" +
                              QString(QChar::ReplacementCharacter)));
        QCOMPARE(orderOf(page).first(), QString("1"));
        QCOMPARE(orderOf(page).last(), QString("0"));
        QCOMPARE(page.count("aria-sort=\"descending\""), 1);
        QVERIFY(page.contains("href=\"#sort=missing\""));
        const QString unsorted = shown(path, QString(), {});
        QVERIFY(orderOf(unsorted) != orderOf(page));
        QCOMPARE(unsorted.count("<tr data-"), 7);
        QVERIFY(unsorted.contains("<title>13 Nov: 1 mail sent</title>"));
        QVERIFY(unsorted.indexOf("<b>broken</b>") < unsorted.indexOf("<table>"));

        // On a telephone, and in the dark.
        const QString probe = withProbe(path);
        const QString light = shown(probe, QString(), {"--window-size=360,740"});
        const QRegularExpression measured("data-wide=\"(\\d+)\" data-view=\"(\\d+)\" "
                                          "data-strip=\"(\\d+)\" data-back=\"([^\"]+)\"");
        const auto narrow = measured.match(light);
        QVERIFY2(narrow.hasMatch(), qPrintable(light.right(400)));
        QCOMPARE(narrow.captured(2), QString("360"));
        QCOMPARE(narrow.captured(1), QString("360")); // nothing to scroll to the side for
        QVERIFY(narrow.captured(3).toInt() > 300);
        QCOMPARE(narrow.captured(4), QString("rgb(255, 255, 255)"));
        const auto dark = measured.match(
            shown(probe, QString(),
                  {"--window-size=1280,800", "--blink-settings=preferredColorScheme=0"}));
        QCOMPARE(dark.captured(1), QString("1280"));
        QCOMPARE(dark.captured(4), QString("rgb(20, 23, 26)"));
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

    QJsonObject jsonOf(const QString &arguments) const
    {
        return QJsonDocument::fromJson(run(arguments).output.toUtf8()).object();
    }

    static void collectFields(const QJsonValue &value, QSet<QString> &fields)
    {
        const QJsonObject object = value.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry) {
            fields.insert(entry.key());
            collectFields(entry.value(), fields);
        }
        for (const QJsonValue one : value.toArray())
            collectFields(one, fields);
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
        const QRegularExpression missing("data-missing=\"(\\d+)\"");
        QStringList order;
        for (auto match = missing.globalMatch(page); match.hasNext();)
            order << match.next().captured(1);
        return order;
    }

    /// Returns a copy of the page with a script that measures it; the policy for styles stays.
    QString withProbe(const QString &path) const
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QString page = QString::fromUtf8(file.readAll());
        page.replace(QRegularExpression("script-src '[^']+'"), "script-src 'unsafe-inline'");
        page.replace("</body>",
                     "<script>const d = document.documentElement, set = d.dataset;"
                     "set.wide = d.scrollWidth; set.view = innerWidth;"
                     "set.strip = Math.round(document.querySelector('.strip')"
                     ".getBoundingClientRect().width);"
                     "set.back = getComputedStyle(document.body).backgroundColor;</script></body>");
        QFile copy(bench->temporary.filePath("probe.html"));
        return copy.open(QIODevice::WriteOnly) && copy.write(page.toUtf8()) > 0 ? copy.fileName()
                                                                                : QString();
    }
};

QTEST_GUILESS_MAIN(TestToolHistory)
#include "tst_toolhistory.moc"
