#include "support/workbookreader.h"
#include "testbook.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>

#include <clocale>
#include <csignal>
#include <thread>

#include <sys/resource.h>
#include <sys/stat.h>

/** Saving, and what does not depend on single cells: bytes, failures, threads, other programs. */
class TestWorkbookSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void equalBytes();
    void threadsShareNothing();
    void decimalComma();
    void failures_data();
    void failures();
    void linkIsReplaced();
    void fullDisk();
    void otherPrograms();

private:
    [[nodiscard]] QString file(const QString &name = "book.xlsx"_q) const
    {
        return dir->filePath(name);
    }
    [[nodiscard]] QStringList listing() const
    {
        return QDir(dir->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    QScopedPointer<QTemporaryDir> dir;
};

namespace
{

/** A small report with everything that one uses; every third row has formulas. */
void fill(const TestBook &book, int rows)
{
    book->setDefaultFont(L"MS Shell Dlg 2", 10);
    book->setRgbMode(true);
    Sheet *sheet = book->addSheet(L"Mes. report dochádzky");
    Format *format = book->addFormat();
    format->setNumFormat(book->addCustomNumFormat(L"#0.00"));
    format->setBorder(libxl::BorderStyle::Thin);
    format->setBorderColor(libxl::Color::Black);
    sheet->setCol(0, 3, 20);
    sheet->setRow(0, 16);
    sheet->setFooter(L"Strana &P/&N", 0.5);
    sheet->writeStr(0, 0, L"Priezvisko a meno", format);
    for (int row = 1; row <= rows; ++row) {
        sheet->writeStr(row, 0, (L"Zamestnanec " + std::to_wstring(row)).c_str(), format);
        sheet->writeNum(row, 1, row * 0.25, format);
        sheet->writeBlank(row, 2, format);
        if (row % 3 == 0) {
            const std::wstring number = std::to_wstring(row + 1);
            std::wstring expr = L"=B" + number;
            expr += L"/(B2/100)-C" + number;
            sheet->writeFormula(row, 3, expr.c_str(), format);
        }
    }
    sheet->split(1, 0);
    sheet->setPrintRepeatRows(0, 0);
}

} // namespace

void TestWorkbookSave::init()
{
    dir.reset(new QTemporaryDir);
    QVERIFY(dir->isValid());
}

void TestWorkbookSave::equalBytes()
{
    TestBook book("xlsx"_q);
    fill(book, 200);
    QVERIFY(book.save(file()));
    const QByteArray bytes = bytesOf(file());
    QCOMPARE(faultsOf(file()), QByteArray());
    QVERIFY(book.save(file("again"_q)));
    QCOMPARE(bytesOf(file("again"_q)), bytes);

    TestBook other("xlsx"_q);
    fill(other, 200);
    QVERIFY(other.save(file())); // over the older file
    QCOMPARE(bytesOf(file()), bytes);
    QCOMPARE(QFileInfo(file()).permissions() & ~(QFile::ReadUser | QFile::WriteUser),
             QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(listing(), QStringList({"again"_q, "book.xlsx"_q}));
}

void TestWorkbookSave::threadsShareNothing()
{
    bool saved[2] = {};
    const auto work = [&](int i) {
        TestBook book("xlsx"_q);
        fill(book, 2000);
        saved[i] = book.save(file(QString::number(i)));
    };
    std::thread first(work, 0);
    std::thread second(work, 1);
    first.join();
    second.join();
    QVERIFY(saved[0] && saved[1]);
    QCOMPARE(bytesOf(file("0"_q)), bytesOf(file("1"_q)));
}

void TestWorkbookSave::decimalComma()
{
    // A locale of our own: whether the machine has one with a comma does not matter.
    QFile source(file("comma.src"_q));
    QVERIFY(source.open(QIODevice::WriteOnly));
    source.write("LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\n"
                 "END LC_NUMERIC\n");
    source.close();
    QFile characters(file("comma.map"_q));
    QVERIFY(characters.open(QIODevice::WriteOnly));
    characters.write("<code_set_name> MINI\nCHARMAP\n<U002C> \\x2c\nEND CHARMAP\n");
    characters.close();
    // It warns of all that is missing beside the numbers.
    complaints("localedef"_q,
               {"-c"_q, "-f"_q, characters.fileName(), "-i"_q, source.fileName(), file("comma"_q)});
    qputenv("LOCPATH", dir->path().toLocal8Bit());
    QVERIFY(std::setlocale(LC_NUMERIC, "comma") != nullptr);
    char text[8];
    std::snprintf(text, sizeof text, "%g", 7.5);
    QCOMPARE(QByteArray(text), QByteArray("7,5")); // the locale is what we take it for

    TestBook book("xlsx"_q);
    book->addSheet(L"S")->writeNum(0, 0, 7.5);
    const bool saved = book.save(file());
    std::setlocale(LC_NUMERIC, "C");
    qunsetenv("LOCPATH");
    QVERIFY(saved);
    const QJsonObject cells = readSheet(file())["cells"_q].toObject();
    QCOMPARE(cells["A1"_q].toObject()["value"_q].toDouble(), 7.5);
}

void TestWorkbookSave::failures_data()
{
    QTest::addColumn<QString>("target");

    QTest::newRow("no such folder") << "none/book.xlsx"_q;
    QTest::newRow("the target is a folder") << "folder"_q;
    QTest::newRow("a file is taken for a folder") << "older/book.xlsx"_q;
    QTest::newRow("longest name and one more") << QString(256, QLatin1Char('x'));
    QTest::newRow("the folder itself") << QString();
}

void TestWorkbookSave::failures()
{
    QFETCH(QString, target);
    QVERIFY(QDir(dir->path()).mkdir("folder"_q));
    QFile older(file("older"_q));
    QVERIFY(older.open(QIODevice::WriteOnly));
    const QStringList before = listing();

    TestBook book("xlsx"_q);
    fill(book, 10);
    QVERIFY(!book.save(dir->path() + QLatin1Char('/') + target));
    QVERIFY(!book->save(nullptr));
    QVERIFY(!book->save(L""));
    QCOMPARE(listing(), before);
    QVERIFY(book.save(file(QString(255, QLatin1Char('x'))))); // the book is none the worse
}

void TestWorkbookSave::linkIsReplaced()
{
    QFile precious(file("precious"_q));
    QVERIFY(precious.open(QIODevice::WriteOnly));
    precious.write("precious");
    precious.close();
    QVERIFY(precious.link(file()));
    TestBook book("xlsx"_q);
    fill(book, 1);
    QVERIFY(book.save(file()));
    QVERIFY(!QFileInfo(file()).isSymLink());
    QCOMPARE(bytesOf(precious.fileName()), QByteArray("precious"));
}

void TestWorkbookSave::fullDisk()
{
    TestBook book("xlsx"_q);
    fill(book, 30000);
    QFile older(file());
    QVERIFY(older.open(QIODevice::WriteOnly));
    older.write("older");
    older.close();

    // A file may not grow past the limit: the write that crosses it is cut short, the next fails.
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
    QCOMPARE(bytesOf(file()), QByteArray("older"));
    QCOMPARE(listing(), QStringList("book.xlsx"_q));
    QVERIFY(book.save(file()));
    QVERIFY2(QFileInfo(file()).size() > 300000, "the largest limit was no limit");
}

void TestWorkbookSave::otherPrograms()
{
    TestBook book("xlsx"_q);
    fill(book, 50);
    QVERIFY(book.save(file()));
    const QString csv = file("gnumeric.csv"_q);
    QCOMPARE(complaints("ssconvert"_q, {file(), csv}), QByteArray());
    const QList<QByteArray> lines = bytesOf(csv).split('\n');
    QCOMPARE(lines.value(0), QByteArray("\"Priezvisko a meno\",,,"));
    QCOMPARE(lines.value(3), QByteArray("\"Zamestnanec 3\",0.75,,300"));

    // It says 0 whatever happens: only its output counts. A profile of its own keeps it apart
    // from others that run at the same time.
    complaints("soffice"_q,
               {"-env:UserInstallation=file://%1/profile"_q.arg(dir->path()), "--headless"_q,
                "--convert-to"_q, "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true"_q,
                "--outdir"_q, dir->path(), file()});
    const QList<QByteArray> office = bytesOf(file("book.csv"_q)).split('\n');
    QCOMPARE(office.value(3), QByteArray("Zamestnanec 3,0.75,,300.00"));
}

QTEST_GUILESS_MAIN(TestWorkbookSave)
#include "tst_workbooksave.moc"
