#include "testbook.h"

#include <cfloat>
#include <cmath>

using libxl::CellType;

/** What is in the cells, and what must not get there. */
class TestCells : public QObject, private FormatFixture
{
    Q_OBJECT

public:
    explicit TestCells(bool binary)
        : FormatFixture(binary)
        , rows(isXls ? 65536 : 1048576)
        , columns(isXls ? 256 : 16384)
        , lastCell(isXls ? "IV65536"_q : "XFD1048576"_q)
    {
    }

private Q_SLOTS:
    void texts();
    void numbers();
    void refused();
    void overwritten();

private:
    const int rows;
    const int columns;
    const QString lastCell;
};

void TestCells::texts()
{
    const QString emoji = "\U0001F600"_q;
    struct {
        QString written;
        QString read; // where it differs
    } const cases[] = {{"Ľubomír Ťažký "_q + emoji, {}},
                       {"žluťoučký kůň, ÁÉÍ"_q, {}},
                       {R"(<a href="x"> & ]]>')"_q, {}},
                       {"  a  "_q, {}},
                       {"a\nb\tc\n"_q, {}},
                       {"a\rb\r\n"_q, {}},
                       {"_x0041_ __x000d_ _x12_"_q, {}},
                       {"007"_q, {}},
                       {"=1+1"_q, {}},
                       {QString(255, QLatin1Char('x')), {}},
                       {QString(32767, QLatin1Char('x')), {}},
                       {QString(32767, QChar(0x10D)), {}},
                       {emoji.repeated(16383) + QLatin1Char('x'), {}},
                       {QLatin1Char('a') + QString(QChar(0xD800)) + QLatin1Char('b'), "a\uFFFDb"_q},
                       {QString(QChar(0xDE00)) + QChar(0xD83D), "\uFFFD\uFFFD"_q}};
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    int row = 0;
    for (const auto &entry : cases) {
        // Unit by unit: Qt's own conversion would repair what is broken.
        std::wstring wide;
        for (const QChar unit : entry.written)
            wide += static_cast<wchar_t>(unit.unicode());
        QVERIFY(sheet->writeStr(row++, 0, wide.c_str()));
    }
    Format *format = book->addFormat();
    format->setWrap(true);
    QVERIFY(sheet->writeStr(row, 0, L"", format));
    const QJsonObject read = saved(book);
    row = 0;
    for (const auto &entry : cases) {
        const QJsonObject cell = cellOf(read, "A%1"_q.arg(++row));
        QCOMPARE(cell["type"_q].toString(), "text"_q);
        QCOMPARE(cell["value"_q].toString(), entry.read.isNull() ? entry.written : entry.read);
    }
    const QJsonObject empty = cellOf(read, "A%1"_q.arg(row + 1));
    QCOMPARE(empty["type"_q].toString(), isXls ? "blank"_q : "text"_q);
    QCOMPARE(empty["value"_q].toString(), QString());
    QCOMPARE(empty["wrap"_q], QJsonValue(true));
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
    QVERIFY(sheet->writeNum(rows - 1, columns - 1, 5));
    const QJsonObject read = saved(book);
    row = 0;
    for (const double number : numbers) {
        const QJsonObject cell = cellOf(read, "A%1"_q.arg(++row));
        QCOMPARE(cell["type"_q].toString(), "number"_q);
        QVERIFY2(cell["value"_q].toDouble() == number, qPrintable(QString::number(number)));
    }
    QCOMPARE(cellOf(read, lastCell)["value"_q].toInt(), 5);
    QCOMPARE(read["dimensions"_q].toString(), "A1:"_q + lastCell);
}

void TestCells::refused()
{
    const TestBook book(isXls);
    const TestBook other(isXls);
    Format *foreign = other->addFormat();
    Sheet *sheet = book->addSheet(L"S");
    const std::wstring tooLong(32768, L'x');
    const std::wstring pairs(16384, L'\U0001F600');
    const std::wstring longFormula(8193, L'1');
    const std::function<bool(int)> writes[] = {
        [&](int row) { return sheet->writeStr(row, 0, nullptr); },
        [&](int row) { return sheet->writeStr(row, 0, tooLong.c_str()); },
        [&](int row) { return sheet->writeStr(row, 0, pairs.c_str()); },
        [&](int row) { return sheet->writeStr(row, 0, L"a\x01z"); },
        [&](int row) { return sheet->writeStr(row, 0, L"\xFFFE"); },
        [&](int row) { return sheet->writeStr(row, 0, L"a", foreign); },
        [&](int row) { return sheet->writeStr(row, 0, L"a", nullptr, CellType::Number); },
        [&](int row) { return sheet->writeNum(row, 0, std::nan("")); },
        [&](int row) { return sheet->writeNum(row, 0, -INFINITY, nullptr); },
        [&](int row) { return sheet->writeBlank(row, 0, foreign); },
        [&](int row) { return sheet->writeFormula(row, 0, nullptr); },
        [&](int row) { return sheet->writeFormula(row, 0, L"="); },
        [&](int row) {
            return sheet->writeFormula(row, 0, longFormula.c_str());
        }};
    int row = 0;
    for (const auto &write : writes) {
        QVERIFY(sheet->writeNum(row, 0, 1)); // goes, too
        QVERIFY2(!write(row), qPrintable(QString::number(row)));
        ++row;
    }
    QVERIFY(!sheet->writeNum(-1, 0, 1));
    QVERIFY(!sheet->writeNum(0, -1, 1));
    QVERIFY(!sheet->writeNum(0, columns, 1));
    QCOMPARE(saved(book)["cells"_q].toObject().size(), 0);

    QVERIFY(!sheet->writeNum(rows, 0, 1));
    QVERIFY2(!book.save(file()), "a row that does not fit must not be lost in silence");
}

void TestCells::overwritten()
{
    const TestBook plain(isXls);
    const TestBook shuffled(isXls);
    Sheet *first = plain->addSheet(L"S");
    Sheet *second = shuffled->addSheet(L"S");
    const int height = 97;
    const int width = 11;
    for (int i = 0; i < height * width; ++i)
        first->writeStr(i / width, i % width, std::to_wstring(i).c_str());
    // 7 has no common factor with the number of cells: every place is visited, in a wild order.
    for (int pass = 0; pass < 5; ++pass) {
        for (int step = 0; step < height * width; ++step) {
            const int i = step * 7 % (height * width);
            const std::wstring text = std::to_wstring(pass == 4 ? i : -i);
            second->writeStr(i / width, i % width, text.c_str());
        }
    }
    QVERIFY(plain.save(file()));
    QVERIFY(shuffled.save(file("other"_q)));
    QCOMPARE(bytesOf(file("other"_q)), bytesOf(file()));
    const QJsonObject read = saved(shuffled);
    QCOMPARE(cellOf(read, "K97"_q)["value"_q].toString(), QString::number(height * width - 1));
}

int main(int argc, char **argv)
{
    return testBothFormats<TestCells>(argc, argv);
}
#include "tst_workbook_cells.moc"
