#include "testbook.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <clocale>
#include <csignal>
#include <thread>

#include <sys/resource.h>

/** Saving, and what does not depend on single cells: bytes, failures, threads. */
class TestSave : public QObject, private FormatFixture
{
    Q_OBJECT

private Q_SLOTS:
    /** Each test finds the folder empty. */
    void cleanup()
    {
        QVERIFY(QDir(dir.path()).removeRecursively());
        QVERIFY(QDir().mkdir(dir.path()));
    }

    /** In place of a link and of itself, and two like it in threads that run at once. */
    void equalBytes()
    {
        const QString precious = makeFile("precious"_q, "precious");
        QVERIFY(QFile::link(precious, file()));
        const TestBook book(isXls);
        fill(book, 2000);
        QVERIFY(book.save(file()));
        QVERIFY(!QFileInfo(file()).isSymLink() && readFile(precious) == "precious");
        QVERIFY(book.save(file()));
        QVERIFY(!readSheet(file()).isEmpty());
        bool saved[2] = {};
        const auto work = [&](int i) {
            const TestBook other(isXls);
            fill(other, 2000);
            saved[i] = other.save(file(QString::number(i)));
        };
        std::thread first(work, 0);
        std::thread second(work, 1);
        first.join();
        second.join();
        QVERIFY(saved[0] && saved[1]);
        QVERIFY(readFile(file("0"_q)) == readFile(file()));
        QVERIFY(readFile(file("1"_q)) == readFile(file()));
        QCOMPARE(QFileInfo(file()).permissions() & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        QCOMPARE(listing().size(), 4);
    }

    void decimalComma()
    {
        // A locale of our own: whether the machine has one with a comma does not matter.
        const QString numbers = makeFile(
            "numbers"_q, "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\n"
                         "END LC_NUMERIC\n");
        const QString characters =
            makeFile("characters"_q, "<code_set_name> MINI\nCHARMAP\n<U002C> \\x2c\nEND CHARMAP\n");
        // It warns of all that is missing beside the numbers.
        QProcess maker;
        maker.start("localedef"_q,
                    {"-c"_q, "-f"_q, characters, "-i"_q, numbers, dir.filePath("comma"_q)});
        QVERIFY(maker.waitForFinished());
        qputenv("LOCPATH", dir.path().toLocal8Bit());
        QVERIFY(std::setlocale(LC_NUMERIC, "comma") != nullptr);
        char text[8];
        std::snprintf(text, sizeof text, "%g", 7.5);
        QCOMPARE(QByteArray(text), QByteArray("7,5")); // the locale is what we take it for

        const TestBook book(isXls);
        Sheet *sheet = book->addSheet(L"S");
        sheet->writeNum(0, 0, 7.5);
        sheet->writeFormula(0, 1, L"=A1*1.5");
        const QJsonObject read = saved(book);
        std::setlocale(LC_NUMERIC, "C");
        qunsetenv("LOCPATH");
        QCOMPARE(cellOf(read, "A1"_q)["value"_q].toDouble(), 7.5);
        QCOMPARE(cellOf(read, "B1"_q)["cached"_q].toDouble(), 11.25);
    }

    void failures()
    {
        QVERIFY(QDir(dir.path()).mkdir("folder"_q));
        makeFile("older"_q, "older");
        const QStringList before = listing();
        const TestBook book(isXls);
        QVERIFY(!book.save(file())); // no sheet yet
        fill(book, 10);
        for (const QString &target : {"none/book"_q, "../../../../../../proc/self/book"_q,
                                      "folder"_q, "older/book"_q, QString(256, QLatin1Char('x'))})
            QVERIFY2(!book.save(dir.filePath(target)), qPrintable(target));
        QCOMPARE(listing(), before);
        QVERIFY(book.save(dir.filePath(QString(255, QLatin1Char('x'))))); // none the worse
    }

    void fullDisk()
    {
        const TestBook book(isXls);
        fill(book, 30000);
        QCOMPARE(makeFile(QFileInfo(file()).fileName(), "older"), file());

        // The write that crosses the limit of a file's size is cut short, the next one fails.
        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        bool saved = false;
        for (const rlim_t limit : {0, 100, 300000}) {
            rlimit low = old;
            low.rlim_cur = limit;
            setrlimit(RLIMIT_FSIZE, &low);
            saved = book.save(file()) || saved;
            setrlimit(RLIMIT_FSIZE, &old);
        }
        std::signal(SIGXFSZ, handler);
        QVERIFY(!saved);
        QCOMPARE(readFile(file()), QByteArray("older"));
        QCOMPARE(listing(), QStringList(QFileInfo(file()).fileName()));
        QVERIFY(book.save(file()));
        QVERIFY2(QFileInfo(file()).size() > 300000, "the largest limit was no limit");
    }

private:
    /** A small report. */
    static void fill(const TestBook &book, int rows)
    {
        Sheet *sheet = book->addSheet(L"Mes. report dochádzky");
        Format *format = book->addFormat();
        format->setNumFormat(book->addCustomNumFormat(L"#0.00"));
        sheet->setCol(0, 3, 20);
        sheet->setRow(0, 16);
        for (int row = 1; row <= rows; ++row) {
            const std::wstring number = std::to_wstring(row + 1);
            sheet->writeStr(row, 0, (L"Zamestnanec " + number).c_str(), format);
            sheet->writeNum(row, 1, row * 0.25, format);
            sheet->writeFormula(row, 2, (L"=B" + number + L"/(B2/100)").c_str(), format);
        }
        sheet->setPrintRepeatRows(0, 0);
    }

    QString makeFile(const QString &name, const QByteArray &content) const
    {
        writeFile(dir.filePath(name), content);
        return dir.filePath(name);
    }
    [[nodiscard]] QStringList listing() const
    {
        return QDir(dir.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
};

int main(int argc, char **argv)
{
    return testBothFormats<TestSave>(argc, argv);
}
#include "tst_workbook_save.moc"
