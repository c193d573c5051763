#include "tool/tooltest.h"

/// Wrong command lines, where output goes to, and what the commands that only read print.
class TestToolAnswers : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void usage_data()
    {
        const auto guess = [](const char *text, const char *meant) {
            return QString("%1\nDid you mean '%2'?\n").arg(text, meant);
        };
        addRow("command", "chekc --json", guess("unknown command 'chekc'", "check"));
        addRow("option", "status --absurd", "unknown option 'absurd'\nUsage: autoreport status ");
        addRow("near option", "status --jsno", guess("unknown option 'jsno'", "--json"));
        addRow("prefix", "why firm daily --time", guess("unknown option 'time'", "--timeout"));
        addRow("report", "why firm Dayly",
               guess("there is no report 'Dayly', only daily or monthly", "daily"));
        addRow("out", "preview firm daily --out x.ods", "end with .xlsx or .xls");
        addRow("date", "preview firm daily --out x.xls --date 2023-02-29", "--date must");
        addRow("to", "run firm daily --to a@firma", "--to must be one mail address");
        addRow("nobody to ask", "run firm daily", "give --yes");
        addRow("mark", "run firm daily --yes --mark --date 2023-11-14", "--mark is for");
        addRow("schema", "run nobody daily --yes",
               "no active schema 'nobody'\nUsage: TOKEN is one of those in the table schemas\n");
        addRow("near schema", "run Fimr daily --yes", guess("no active schema 'Fimr'", "firm"));
        addRow("near schema's history", "history frim", guess("'frim'", "firm"));
        for (const QString empty : {"why '' daily", "history ''", "check ''", "status --schema ''"})
            addRow(qPrintable(empty), empty, "the schema's token is empty\nUsage: ");
        addRow("two formats", "history --json --html x", "--json and --html exclude");
        addRow("injection", "preview x'OR''=' daily --out x.xls", "no active schema 'x'OR''=''");
        addRow("set", "set", "name the schema and the report");
        addRow("report to set", "set firm other --enable", "there is no report 'other'");
        addRow("nothing to set", "set firm daily", "nothing to set");
        addRow("address", "set firm daily --emails a@firma.sk,b", "'b' is not a mail address");
        addRow("time", "set firm daily --time 7:00", "--time must be HH:MM, not '7:00'");
        addRow("format", "set firm daily --format xlxs", guess("not 'xlxs'", "xlsx"));
        addRow("format of the other", "set firm monthly --format xls", "is always .xlsx");
        addRow("both", "set firm daily --enable --disable", "exclude each other");
        addRow("all and one", "set --all firm daily --enable", "--all and the schema 'firm'");
        addRow("nobody to ask for all", "set --all daily --enable", "give --yes, or --dry-run");
        addRow("second schema", "set firm frm daily --disable", guess("'frm'", "firm"));
        addRow("no file", "set --file /no/such", "cannot read '/no/such': No such file");
        addRow("empty file", "set --file /dev/null", "'/dev/null' contains no requests");
        addRow("file, schema", "set --file LINES firm", "'firm' cannot be combined with --file");
        addRow("file, option", "set --file LINES --disable", "'--disable' cannot be combined with");
        addRow("line", "set --file LINES",
               guess("line 3 of 'LINES': unknown option 'tiem'", "--time"));
    }

    /// Whatever is wrong, nothing is stored, not even what comes before it.
    void usage()
    {
        auto [arguments, text] = fetch<QString, QString>();
        const QString path = bench->temporary.filePath("lines");
        writeFile(path, "firm daily --disable\n\nfirm daily --tiem 08:00\n");
        const auto before = bench->schema.rows("CHECKSUM TABLE vars, emails");
        const Outcome outcome = run(arguments.replace("LINES", path));
        QVERIFY2(outcome.errors.contains(text.replace("LINES", path)), qPrintable(outcome.errors));
        QCOMPARE(outcome.errors.count('\n'), 3);
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.output, QString());
        QCOMPARE(bench->schema.rows("CHECKSUM TABLE vars, emails"), before);
    }

    void lostOutputIsAnError_data()
    {
        addRow("a buffer's", "status", 1);
        addRow("more than a buffer holds", "status --json", 30);
        addRow("of a change", "set firm daily --format xls", 1);
        addRow("help of a command", "status --help", 1);
        addRow("help", "--help", 1);
        addRow("version", "--version", 1);
    }

    void lostOutputIsAnError()
    {
        const auto [arguments, schemas] = fetch<QString, int>();
        for (int i = 1; i < schemas; ++i)
            info->addSchemas({QString::number(i)}, bench->schema.name());
        const Outcome outcome = run(arguments, "/dev/full");
        QCOMPARE(outcome.errors, QString("autoreport: cannot write to standard output: "
                                         "No space left on device\n"));
        QCOMPARE(outcome.status, 1);
    }

    void targets_data()
    {
        addRow("new", "true", true);
        addRow("file", "touch p.xls", true);
        addRow("link to a file", "touch file; ln -s file p.xls", true);
        addRow("link to nothing", "ln -s nothing p.xls", true);
        addRow("FIFO", "mkfifo p.xls", false);
        addRow("link to a FIFO", "mkfifo fifo; ln -s fifo p.xls", false);
        addRow("folder", "mkdir p.xls", false);
    }

    /// Devices and FIFOs are not replaced by what a command writes.
    void targets()
    {
        const auto [making, taken] = fetch<QString, bool>();
        for (const QString command : {"preview firm daily --out ", "history --html "}) {
            const QTemporaryDir folder;
            QCOMPARE(QProcess::execute("sh", {"-c", "cd " + folder.path() + "; " + making}), 0);
            const QString path = folder.filePath("p.xls");
            const bool wasLink = QFileInfo(path).isSymLink();
            const Outcome outcome = run(command + path);
            QCOMPARE(outcome.status, taken ? 0 : 1);
            QCOMPARE(outcome.output, taken ? path + '\n' : QString());
            QCOMPARE(outcome.errors,
                     taken ? QString()
                           : "autoreport: cannot write '" + path + "': it is not a regular file\n");
            QCOMPARE(QFileInfo(path).isFile(), taken);
            QVERIFY(taken || QFileInfo(path).isSymLink() == wasLink);
        }
    }

    void statusOfManySchemas()
    {
        QVERIFY(run("status --problems").output.startsWith("no problems\n"));
        info->addSchemas({QString(64, 'x')}, bench->schema.name());
        info->addSchemas({"gone"}, "no_such_database");
        const Outcome outcome = run("status --all");
        QCOMPARE(outcome.status, 1);
        const QRegularExpression expected(
            "\nfirm .*2023-11-16 07:00.*\nfirm .*\ngone .* unreachable\n(.*\n)*"
            "gone: cannot open the database 'no_such_database' on ");
        QVERIFY2(outcome.output.contains(expected), qPrintable(outcome.output));
        QVERIFY(!outcome.output.contains("secret") && !outcome.output.contains('\033'));

        info->exec(
            "UPDATE `schemas` SET token = 'x\nfirm  daily\x1b[\u009b\u202e' WHERE token = 'gone'");
        const QString harmless = QString("\nx%1firm  daily%1[%1%1 ").arg(QChar(0xFFFD));
        QVERIFY(run("status").output.contains(harmless));
        info->exec("ALTER TABLE `schemas` DROP sid"); // an empty list is no answer
        for (const QString command : {"status", "check", "set --all daily --enable --yes"})
            QCOMPARE(run(command).status, 2);
    }

    void whyTellsEachRule()
    {
        const Outcome outcome = run(R"(why firm daily --at "2024-03-31 02:30")");
        QString found;
        for (const QString &line : outcome.output.split('\n'))
            found += line.startsWith("  met ") ? "y" : line.startsWith("  not met ") ? "n" : "";
        QCOMPARE(found, QString("yyny"));
        QVERIFY(outcome.output.contains("\nNext due: 2024-03-31 07:00:00 CEST\n"));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(run("why firm monthly").status, 1); // it will never be due
    }

    void checkOfServer()
    {
        info->exec("INSERT INTO `schemas` (token, name, user, pass) SELECT seq, '', '', '' FROM "
                   "seq_1_to_6000");
        info->exec("SET GLOBAL max_connections = 300");
        const QString found = run("check --json").output;
        info->exec("SET GLOBAL max_connections = 6000");
        QVERIFY2(found.contains("max_connections is 300; a host needs up to 403 for 6001"),
                 qPrintable(found.left(2000)));
        QVERIFY(found.contains("its clock is "));
    }
};

QTEST_GUILESS_MAIN(TestToolAnswers)
#include "tst_toolanswers.moc"
