#include "support/workbookreader.h"
#include "testbook.h"

#include <QJsonObject>

/** What the files say formulas amount to. */
class TestFormula : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void results();
    void chains();

private:
    [[nodiscard]] QJsonObject savedCells(const TestBook &book) const;

    QScopedPointer<QTemporaryDir> dir;
};

void TestFormula::init()
{
    dir.reset(new QTemporaryDir);
    QVERIFY(dir->isValid());
}

QJsonObject TestFormula::savedCells(const TestBook &book) const
{
    const QString file = dir->filePath("book.xlsx"_q);
    const bool good = book.save(file) && faultsOf(file).isEmpty();
    return good ? readSheet(file)["cells"_q].toObject() : QJsonObject();
}

/** One column of formulas, each of which sees the same few cells. */
void TestFormula::results()
{
    struct {
        std::wstring expression;
        QJsonValue result; // text for an error, null where we do not know
    } const cases[] = {
        {L"E1", QJsonValue()}, // is this very cell
        {L"A1-B1*2", 2.0},
        {L"(A1-B1)*2", 12.0},
        {L"A1/(B1/100)", 250.0},
        {L"2-3-4", -5.0},
        {L"8/4/2", 1.0},
        {L"-A1+B1", -6.0},
        {L"3--+A1", 13.0},
        {L" a1 + $B$1 ", 14.0},
        {L"0.1+0.2", 0.1 + 0.2},
        {L"1.5E-3*.5", 0.00075},
        {L"250%", 2.5},
        {L"C1+Z99", 0.0},
        {L"0*-1", 0.0},
        {L"XFD1048576", 0.0},
        {L"A1/C1", "#DIV/0!"_q},
        {L"1+A2", "#DIV/0!"_q},
        {L"1E308*10", "#NUM!"_q},
        {L"D1+1", QJsonValue()},
        {L"A3", QJsonValue()}, // a cycle
        {L"A1/0+D1", QJsonValue()},
        {L"2^3", QJsonValue()},
        {L"SUM(A1:B1)", QJsonValue()},
        {L"'Other sheet'!A1", QJsonValue()},
        {L"S!A1", QJsonValue()},
        {L"A1:B1", QJsonValue()},
        {L"XFE1", QJsonValue()},
        {L"A1048577", QJsonValue()},
        {L"A0", QJsonValue()},
        {L"A1+", QJsonValue()},
        {L"(A1", QJsonValue()},
        {L"A1)", QJsonValue()},
        {L"1.2.3", QJsonValue()},
        {L"1e999", QJsonValue()},
        {L"\"text", QJsonValue()},
    };
    TestBook book("xlsx"_q);
    Sheet *sheet = book->addSheet(L"S");
    sheet->writeNum(0, 0, 10);
    sheet->writeNum(0, 1, 4);
    sheet->writeBlank(0, 2, nullptr);
    sheet->writeStr(0, 3, L"12");
    sheet->writeFormula(1, 0, L"=A1/0");
    sheet->writeFormula(2, 0, L"=A4");
    sheet->writeFormula(3, 0, L"=1+A3");
    int row = 0;
    for (const auto &entry : cases)
        QVERIFY(sheet->writeFormula(row++, 4, (L'=' + entry.expression).c_str()));
    const QJsonObject cells = savedCells(book);
    row = 0;
    for (const auto &entry : cases) {
        const QJsonObject cell = cells["E%1"_q.arg(++row)].toObject();
        QCOMPARE(cell["value"_q].toString(), QString::fromStdWString(L'=' + entry.expression));
        QVERIFY2(cell["cached"_q] == entry.result, qPrintable(cell["value"_q].toString()));
    }
}

void TestFormula::chains()
{
    TestBook book("xlsx"_q);
    Sheet *sheet = book->addSheet(L"S");
    const int rows = 20000;
    // Each cell of A needs the one below it, each of B twice the one above it.
    sheet->writeNum(0, 1, 1);
    for (int row = 1; row < rows; ++row) {
        const std::wstring below = std::to_wstring(row + 1);
        sheet->writeFormula(row - 1, 0, (L"=1+A" + below).c_str());
        const std::wstring above = L"B" + std::to_wstring(row);
        const std::wstring sum = above + L"/4+" + above;
        if (row < 1000)
            sheet->writeFormula(row, 1, (sum + L"/4").c_str());
    }
    sheet->writeNum(rows - 1, 0, 1);
    std::wstring terms = L"=0";
    for (int i = 0; i < 4000; ++i)
        terms += L"+1";
    QVERIFY(sheet->writeFormula(0, 2, terms.c_str()));
    const auto nested = [](std::size_t depth) {
        return std::wstring(depth, L'(') + L'1' + std::wstring(depth, L')');
    };
    QVERIFY(sheet->writeFormula(0, 3, nested(63).c_str()));
    QVERIFY(sheet->writeFormula(0, 4, nested(4000).c_str()));

    const QJsonObject cells = savedCells(book);
    QCOMPARE(cells["A1"_q].toObject()["cached"_q].toInt(), rows);
    QCOMPARE(cells["B11"_q].toObject()["cached"_q].toDouble(), 1.0 / 1024);
    QCOMPARE(cells["C1"_q].toObject()["cached"_q].toInt(), 4000);
    QCOMPARE(cells["D1"_q].toObject()["cached"_q].toInt(), 1);
    QVERIFY(cells["E1"_q].toObject()["cached"_q].isNull());
}

QTEST_GUILESS_MAIN(TestFormula)
#include "tst_formula.moc"
