#include "testbook.h"

#include <QJsonArray>

#include <cmath>

/** Sheets as a whole: pages, names, copies. */
class TestSheets : public QObject, private FormatFixture
{
    Q_OBJECT

public:
    explicit TestSheets(bool binary)
        : FormatFixture(binary)
    {
    }

private Q_SLOTS:
    void page();
    void untouchedPage();
    void names();
    void severalSheets();
    void nothingFromStrangers();
};

void TestSheets::page()
{
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"Mes. report dochádzky");
    sheet->setDisplayGridlines(false);
    sheet->setPrintGridlines(true);
    sheet->setLandscape(true);
    sheet->setMarginLeft(0.1968);
    sheet->setMarginRight(0.1968);
    sheet->setMarginTop(0.1968);
    sheet->setMarginTop(49); // out of range, like all that follow
    sheet->setMarginTop(std::nan(""));
    sheet->setPrintFit(1, 0);
    sheet->setPrintFit(-1, 0);
    QVERIFY(sheet->setFooter(L"Strana &P/&N", 0.5));
    QVERIFY(!sheet->setFooter(std::wstring(256, L'x').c_str(), 0.5));
    QVERIFY(!sheet->setFooter(L"x", -0.5));
    QVERIFY(!sheet->setFooter(nullptr, 0.5));
    sheet->split(1, 0);
    sheet->split(-1, 0);
    sheet->setPrintRepeatRows(0, 0);
    sheet->setPrintRepeatRows(3, 2);
    sheet->writeNum(0, 0, 1);

    QJsonObject read = saved(book);
    read.remove("cells"_q);
    const QJsonObject margins{{"left"_q, 0.1968}, {"right"_q, 0.1968}, {"top"_q, 0.1968},
                              {"bottom"_q, 0.75}, {"header"_q, 0.3},   {"footer"_q, 0.5}};
    const QJsonObject expected{{"name"_q, "Mes. report dochádzky"_q},
                               {"dimensions"_q, "A1"_q},
                               {"columnWidths"_q, QJsonObject()},
                               {"rowHeights"_q, QJsonObject()},
                               {"freeze"_q, "A2"_q},
                               {"printTitles"_q, "$1:$1"_q},
                               {"landscape"_q, true},
                               {"fitToPage"_q, true},
                               {"fitToWidth"_q, 1},
                               {"fitToHeight"_q, 0},
                               {"paper"_q, 9},
                               {"margins"_q, margins},
                               {"footer"_q, "Strana &P/&N"_q},
                               {"showGridLines"_q, false},
                               {"printGridLines"_q, true}};
    QCOMPARE(read, expected);
}

void TestSheets::untouchedPage()
{
    const TestBook book(isXls);
    book->addSheet(L"S");
    const QJsonObject read = saved(book);
    QCOMPARE(read["dimensions"_q].toString(), "A1"_q);
    for (const char *off : {"landscape", "fitToPage", "printGridLines"})
        QCOMPARE(read[QLatin1String(off)], QJsonValue(false));
    for (const char *none : {"freeze", "printTitles"})
        QVERIFY2(read[QLatin1String(none)].isNull(), none);
    QCOMPARE(read["showGridLines"_q], QJsonValue(true));
    QCOMPARE(read["footer"_q].toString(), QString());
    const QJsonObject margins = read["margins"_q].toObject();
    QCOMPARE(margins["left"_q].toDouble(), 0.7);
    QCOMPARE(margins["footer"_q].toDouble(), 0.3);
}

void TestSheets::names()
{
    const TestBook book(isXls);
    QVERIFY(book->addSheet(L"žltý KÔŇ") != nullptr);
    const wchar_t *const refused[] = {L"12345678901234567890123456789012",
                                      L"",
                                      L"'a",
                                      L"a'",
                                      L"a\tb",
                                      L"ŽLTÝ kôň", // differs in case only
                                      L"a[",
                                      L"a]",
                                      L"a:",
                                      L"a*",
                                      L"a?",
                                      L"a/",
                                      L"a\\"};
    for (const wchar_t *title : refused)
        QVERIFY2(book->addSheet(title) == nullptr, qPrintable(QString::fromWCharArray(title)));
    const wchar_t *const accepted[] = {L"Denný report doch. 11-2023", L"a&b <c> \"d\" O'Neil",
                                       L"1234567890123456789012345678901"};
    int sheet = 0;
    for (const wchar_t *title : accepted) {
        book->addSheet(title)->setPrintRepeatRows(0, 1);
        const QJsonObject read = saved(book, ++sheet);
        QCOMPARE(read["name"_q].toString(), QString::fromWCharArray(title));
        QCOMPARE(read["printTitles"_q].toString(), "$1:$2"_q);
    }
}

void TestSheets::severalSheets()
{
    const TestBook book(isXls);
    Sheet *first = book->addSheet(L"first");
    first->writeStr(0, 0, L"shared");
    first->split(2, 3);
    Sheet *copy = book->addSheet(L"copy", first);
    copy->writeStr(1, 0, L"own");
    book->addSheet(L"empty");
    QVERIFY(book->addSheet(L"no name twice", nullptr) != nullptr);
    const QJsonObject read = saved(book, 1);
    QCOMPARE(read["freeze"_q].toString(), "D3"_q);
    QCOMPARE(cellOf(read, "A1"_q)["value"_q].toString(), "shared"_q);
    QCOMPARE(cellOf(read, "A2"_q)["value"_q].toString(), "own"_q);
    QCOMPARE(readSheet(file(), 0)["cells"_q].toObject().size(), 1);
    QCOMPARE(readWorkbook(file())["sheets"_q].toArray().size(), 4);
}

void TestSheets::nothingFromStrangers()
{
    const TestBook book(isXls);
    const TestBook other(isXls);
    QVERIFY(book->addSheet(nullptr) == nullptr);
    QVERIFY(book->addSheet(L"S", other->addSheet(L"S")) == nullptr);
    QVERIFY(book->addFormat(other->addFormat()) == nullptr);
    QVERIFY(book->addFont(other->addFont()) == nullptr);
    QVERIFY(!book->addFormat()->setFont(other->addFont()));
    QVERIFY(!book->addFormat()->setFont(nullptr));
    QVERIFY(!book.save(file())); // no sheet yet
    QVERIFY(book->setLocale("UTF-8"));
    QVERIFY(book->setLocale("sk_SK.utf8"));
    QVERIFY(!book->setLocale("sk_SK.ISO8859-2"));
    QVERIFY(!book->setLocale(nullptr));
}

int main(int argc, char **argv)
{
    return testBothFormats<TestSheets>(argc, argv);
}
#include "tst_workbook_sheets.moc"
