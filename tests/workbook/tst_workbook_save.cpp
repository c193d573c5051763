#include "failingnew.h"
#include "testbook.h"

#include <clocale>
#include <csignal>
#include <future>

#include <sys/resource.h>

/** Saving, and what does not depend on single cells: bytes, failures, threads, memory. */
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
        QVERIFY(fill(*book, 2000));
        QVERIFY(book.save(file()));
        QVERIFY(!QFileInfo(file()).isSymLink() && readFile(precious) == "precious");
        QVERIFY(book.save(file()));
        QVERIFY(!readSheet(file()).isEmpty());
        const auto work = [this](int i) {
            const TestBook other(isXls);
            return fill(*other, 2000) && other.save(file(QString::number(i)));
        };
        auto first = std::async(std::launch::async, work, 0);
        auto second = std::async(std::launch::async, work, 1);
        QVERIFY(first.get() && second.get());
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
        // It warns of every category that is missing; the numbers are enough.
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
        QCOMPARE(cellValue(read, "A1"_q).toDouble(), 7.5);
        QCOMPARE(cellValue(read, "B1"_q, "cached").toDouble(), 11.25);
    }

    void failures()
    {
        QVERIFY(QDir(dir.path()).mkdir("folder"_q));
        makeFile("older"_q, "older");
        const QStringList before = listing();
        const TestBook book(isXls);
        QVERIFY(!book.save(file())); // no sheet yet
        QVERIFY(fill(*book, 10));
        for (const QString &target : {"none/book"_q, "../../../../../../proc/self/book"_q,
                                      "folder"_q, "older/book"_q, QString(256, QLatin1Char('x'))})
            QVERIFY2(!book.save(dir.filePath(target)), qPrintable(target));
        QCOMPARE(listing(), before);
        QVERIFY(book.save(dir.filePath(QString(255, QLatin1Char('x'))))); // none the worse
    }

    void fullDisk()
    {
        const TestBook book(isXls);
        QVERIFY(fill(*book, 30000));
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

    /** A whole book, from the factory to the release, in which each allocation fails in turn. */
    void everyAllocationFailsOnce()
    {
        const std::wstring path = file().toStdWString();
        QVERIFY(makeBook(path));
        const QByteArray whole = readFile(file());
        QVERIFY(!readSheet(file()).isEmpty());
        const QStringList files = listing();
        const int openFiles = openFileCount();
        int failures = 0;
        for (int left = 0;; ++left) {
            writeFile(file(), "older");
            const int blocks = FailingNew::liveBlocks();
            FailingNew::failAfter(left);
            const bool made = makeBook(path);
            const bool failed = FailingNew::stop();
            const QString place = "allocation "_q + QString::number(left);
            QVERIFY2(FailingNew::liveBlocks() == blocks, qPrintable(place));
            QVERIFY2(openFileCount() == openFiles, qPrintable(place));
            QVERIFY2(listing() == files, qPrintable(place));
            // Sorting can do without memory: then nothing is missing.
            QVERIFY2(readFile(file()) == (made ? whole : "older"), qPrintable(place));
            failures += made ? 0 : 1;
            if (!failed)
                break;
        }
        QVERIFY2(failures > 100, qPrintable(QString::number(failures)));
    }

private:
    /** As the reports do it: a null ends it, the results of cells are ignored. */
    [[nodiscard]] bool makeBook(const std::wstring &path) const
    {
        auto *book = isXls ? xlCreateBookW() : xlCreateXMLBookW();
        const bool saved = book != nullptr && fill(*book, 150) && book->save(path.c_str());
        if (book != nullptr)
            book->release();
        return saved;
    }

    /** A small report, and a copy of its sheet. */
    static bool fill(libxl::IBookT<wchar_t> &book, int rows)
    {
        if (!book.setLocale("a locale of a name that is long: UTF-8"))
            return false;
        book.setDefaultFont(L"Courier New", 12);
        Sheet *first = book.addSheet(L"Mes. report dochádzky");
        Sheet *sheet = first != nullptr ? book.addSheet(L"Another of these", first) : nullptr;
        auto *font = book.addFont();
        Format *format = font != nullptr ? book.addFormat() : nullptr;
        if (sheet == nullptr || format == nullptr)
            return false;
        font->setBold(true);
        format->setFont(font);
        format->setNumFormat(book.addCustomNumFormat(L"#,##0.000"));
        if (!sheet->setCol(1, 3, 20) || !sheet->setRow(0, 16) ||
            !sheet->setFooter(L"Strana &P/&N", 0.5))
            return false;
        sheet->setPrintRepeatRows(0, 0);
        for (int row = rows; row > 0; --row) {
            const wchar_t unique[] = {L'č', static_cast<wchar_t>(0x1000 + row), L'\0'};
            sheet->writeStr(row, 0, unique);
            sheet->writeNum(row, 1, row, format);
        }
        sheet->writeFormula(1, 2, L"=B2-B3/(C3*2)");
        sheet->writeFormula(2, 2, L"=B2");
        return true;
    }

    QString makeFile(const QString &name, const QByteArray &content) const
    {
        writeFile(dir.filePath(name), content);
        return dir.filePath(name);
    }
    static int openFileCount() { return QDir("/proc/self/fd"_q).entryList().size(); }
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
