#include "testbook.h"

#include <cfloat>
#include <cmath>

/** What is in the cells, and what must not get there. */
class TestCells : public QObject, private FormatFixture
{
    Q_OBJECT

private Q_SLOTS:
    void texts();
    void numbers();
    void refused();
};

void TestCells::texts()
{
    const QString emoji = "\U0001F600"_q;
    QStringList texts{"Ľubomír Ťažký "_q + emoji,
                      R"(<a href="x"> & ]]>')"_q,
                      "  a  "_q,
                      "a\nb\tc\n"_q,
                      "a\rb\r\n"_q,
                      "_x0041_ __x000d_ _x12_"_q,
                      "007"_q,
                      "=1+1"_q,
                      emoji.repeated(16383) + QLatin1Char('x'),
                      QLatin1Char('a') + QString(QChar(0xD800)) + QLatin1Char('b'),
                      QString(QChar(0xDE00)) + QChar(0xD83D)};
    for (const int length : {1, 255, 256, 8223, 8224, 32767})
        texts << QString(length, QLatin1Char('x')) << QString(length, QChar(0x10D));
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    for (int row = 0; row < texts.size(); ++row) {
        // Unit by unit: Qt's own conversion would repair what is broken.
        std::wstring wide;
        for (const QChar unit : texts.at(row))
            wide += static_cast<wchar_t>(unit.unicode());
        QVERIFY(sheet->writeStr(row, 0, wide.c_str()));
    }
    QVERIFY(sheet->writeStr(0, 1, L""));
    if (!isXls)
        texts[4] = "a_x000D_b_x000D_\n"_q; // which their reader leaves so, unlike programs
    texts[9] = "a\uFFFDb"_q;
    texts[10] = "\uFFFD\uFFFD"_q;
    const QJsonObject read = saved(book);
    for (int row = 0; row < texts.size(); ++row) {
        const QJsonObject cell = cellOf(read, cellName(row, 0));
        QCOMPARE(cell["type"_q].toString(), "text"_q);
        QCOMPARE(cell["value"_q].toString(), texts.at(row));
    }
    const QJsonObject empty = cellOf(read, "B1"_q);
    QCOMPARE(empty["type"_q].toString(), isXls ? "blank"_q : "text"_q);
    QCOMPARE(empty["value"_q].toString(), QString());
}

void TestCells::numbers()
{
    // Around the limits of the short form that an .xls has for some numbers, too.
    const double numbers[] = {0,          -0.0,      1,          -1,          0.1,
                              1.0 / 3,    1e15,      1e21,       DBL_MAX,     DBL_MIN,
                              4.9e-324,   -12.34,    7.5,        100000,      123456789012345678.0,
                              536870911,  536870912, -536870912, -536870913,  5368709.11,
                              5368709.12, -0.01,     0.005,      1.0 / 16384, 1e300 / 3};
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    int row = 0;
    for (const double number : numbers)
        QVERIFY(sheet->writeNum(row++, 0, number));
    for (int column = 255; column > 0; --column) // the order of the calls does not matter
        QVERIFY(sheet->writeNum(0, column, column));
    QVERIFY(sheet->writeFormula(rows - 1, columns - 1, L"=A12*2"));
    const QJsonObject read = saved(book);
    row = 0;
    for (const double number : numbers) {
        const QJsonObject cell = cellOf(read, cellName(row++, 0));
        QCOMPARE(cell["type"_q].toString(), "number"_q);
        QVERIFY2(cell["value"_q].toDouble() == number, qPrintable(QString::number(number)));
    }
    for (int column = 1; column < 256; ++column)
        QCOMPARE(cellOf(read, cellName(0, column))["value"_q].toInt(), column);
    const QString last = cellName(rows - 1, columns - 1);
    QCOMPARE(cellOf(read, last)["cached"_q].toDouble(), -24.68);
    QCOMPARE(read["dimensions"_q].toString(), "A1:"_q + last);
}

void TestCells::refused()
{
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    const std::wstring pairs(16384, L'\U0001F600');
    for (const auto &text : {std::wstring(32768, L'x'), pairs, std::wstring(L"a\x01z")}) {
        QVERIFY(sheet->writeNum(0, 0, 1)); // goes, too
        QVERIFY(!sheet->writeStr(0, 0, text.c_str()));
    }
    QVERIFY(!sheet->writeNum(1, 0, std::nan("")));
    QVERIFY(!sheet->writeFormula(1, 0, std::wstring(8193, L'1').c_str()));
    const QJsonObject read = saved(book);
    QCOMPARE(read["dimensions"_q].toString(), "A1"_q);
    QCOMPARE(read["cells"_q].toObject().size(), 0);

    QVERIFY(!sheet->writeNum(0, columns, 1));
    QVERIFY2(!book.save(file()), "what does not fit must not be lost in silence");
}

int main(int argc, char **argv)
{
    return testBothFormats<TestCells>(argc, argv);
}
#include "tst_workbook_cells.moc"
