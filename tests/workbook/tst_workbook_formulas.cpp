#include "testbook.h"

/** What formulas amount to: as the files say, and as programs reckon that read them. */
class TestFormulas : public QObject, private FormatFixture
{
    Q_OBJECT

private Q_SLOTS:
    void results();
    void refusedInXls();
    void chains();
};

void TestFormulas::results()
{
    // Reckoned by hand as spreadsheet programs do it: signs before powers, powers from the left
    // (gnumeric reads the text of an .xlsx from the right).
    const QJsonValue unknown; // where the file leaves it to the programs
    const struct {
        std::wstring expression;
        QJsonValue stored;
        QByteArray shown;
    } cases[] = {{L"A1-B1*2", 2, "2"},
                 {L"(A1-B1)*2", 12, "12"},
                 {L"A1/(B1/100)", 250, "250"},
                 {L"2-3-4", -5, "-5"},
                 {L"8/4/2", 1, "1"},
                 {L"-A1+B1", -6, "-6"},
                 {L"3--+A1", 13, "13"},
                 {L" a1 + $B$1 ", 14, "14"},
                 {L"1.5E+3*.5", 750, "750"},
                 {L"250%*A1", 25, "25"},
                 {L"C1+Z99", 0, "0"},
                 {L"0*-1", 0, "0"},
                 {L"A1/C1", "#DIV/0!", "#DIV/0!"},
                 {L"1+A2", "#DIV/0!", "#DIV/0!"},
                 {L"1E308*10", "#NUM!", {}}, // not for gnumeric's larger numbers
                 {L"D1+1", unknown, "13"},
                 {L"-B1^2", unknown, "16"},
                 {isXls ? L"2^3^2" : L"(2^3)^2", unknown, "64"},
                 {L"SUM(A1:B1,$A$1,5,(A1))", unknown, "39"},
                 {L"AVERAGE(B1:A1)+MIN(A1,B1)*MAX(A1,1.5)", unknown, "47"},
                 {L"COUNT(A1:D1)", unknown, "2"},
                 {L"ROUND(A1/3,2)", unknown, "3.33"},
                 {L"ABS(-A1)", unknown, "10"},
                 {L"IF(A1>B1,\"\"\"a\"&\"č\",0)&\"!\"", unknown, "\"\"\"ač!\""},
                 {L"IF(A1<=B1,1,IF(A1<>10,2,IF(B1=4,3,4)))", unknown, "3"},
                 {L"IF(A1>=10,SUM(A1,B1))", unknown, "14"}};
    const TestBook book(isXls);
    book->setDefaultFont(L"MS Shell Dlg 2", 10);
    Sheet *sheet = book->addSheet(L"Mes. report dochádzky");
    sheet->writeNum(0, 0, 10);
    sheet->writeNum(0, 1, 4);
    sheet->writeBlank(0, 2, nullptr);
    sheet->writeStr(0, 3, L"12");
    sheet->writeFormula(1, 0, L"=A1/0");
    sheet->writeFormula(2, 0, L"=A4"); // a cycle
    sheet->writeFormula(3, 0, L"=1+A3");
    Format *decimal = book->addFormat();
    decimal->setNumFormat(book->addCustomNumFormat(L"#0.00"));
    sheet->writeNum(9, 4, 2.5, decimal);
    sheet->setFooter(L"Strana &P/&N", 0.5);
    sheet->setPrintRepeatRows(0, 0);
    sheet->split(1, 0);
    int row = 0;
    for (const auto &entry : cases)
        QVERIFY(sheet->writeFormula(row++, 5, (L'=' + entry.expression).c_str()));

    const QJsonObject read = saved(book);
    QVERIFY(cellOf(read, "A3"_q)["cached"_q].isNull());
    const QByteArrayList gnumeric = linesBy(Program::Gnumeric, file());
    const QByteArrayList office = linesBy(Program::LibreOffice, file());
    QCOMPARE(gnumeric.value(9).split(',').value(4), QByteArray("2.5"));
    QCOMPARE(office.value(9).split(',').value(4), QByteArray("2.50"));
    row = 0;
    for (const auto &entry : cases) {
        const QString expression = QString::fromStdWString(entry.expression);
        const QJsonObject cell = cellOf(read, cellName(row, 5));
        QCOMPARE(cell["type"_q].toString(), "formula"_q);
        QCOMPARE(cell["value"_q].toString(), isXls ? QString() : QLatin1Char('=') + expression);
        QVERIFY2(cell["cached"_q] == entry.stored, qPrintable(expression));
        for (const QByteArrayList &lines : {gnumeric, office})
            QVERIFY2(entry.shown.isNull() || lines.value(row).split(',').last() == entry.shown,
                     qPrintable(expression));
        ++row;
    }
}

void TestFormulas::refusedInXls()
{
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    // An .xlsx holds the text of whatever it is given, an .xls only what we can translate.
    int row = 0;
    for (const wchar_t *expression :
         {L"XFD1048576", L"IW1",      L"A65537",     L"'Other sheet'!A1",
          L"S!A1",       L"A1:B1",    L"XFE1",       L"A1048577",
          L"A0",         L"A1+",      L"(A1",        L"A1)",
          L"1.2.3",      L"1e999",    L"\"text",     L"FOO(1)",
          L"SUM()",      L"ABS(1,2)", L"ABS(A1:B1)", L"SUM(-A1:B1)",
          L"TRUE",       L"LOG10(1)", L"{1,2}"}) {
        sheet->writeNum(row, 0, 1); // goes, too
        QVERIFY2(sheet->writeFormula(row++, 0, expression) != isXls,
                 qPrintable(QString::fromWCharArray(expression)));
    }
    const QJsonObject read = saved(book);
    QCOMPARE(read["name"_q].toString(), "S"_q);
    QCOMPARE(read["cells"_q].toObject().size(), isXls ? 0 : row);
}

void TestFormulas::chains()
{
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    const int length = 20000;
    // Each cell of A needs the one below it, each of B twice the one above it.
    sheet->writeNum(0, 1, 1);
    for (int row = 1; row < length; ++row) {
        const std::wstring above = std::to_wstring(row);
        sheet->writeFormula(row - 1, 0, (L"=1+A" + std::to_wstring(row + 1)).c_str());
        if (row < 1000)
            sheet->writeFormula(row, 1, (L"B" + above + L"/4+B" + above + L"/4").c_str());
    }
    sheet->writeNum(length - 1, 0, 1);
    std::wstring terms = L"=0";
    for (int i = 0; i < 400; ++i)
        terms += L"+1";
    QVERIFY(sheet->writeFormula(0, 2, terms.c_str()));
    const auto nested = [](std::size_t depth) {
        return std::wstring(depth, L'(') + L'1' + std::wstring(depth, L')');
    };
    QVERIFY(sheet->writeFormula(0, 3, nested(63).c_str()));
    QVERIFY(sheet->writeFormula(0, 4, nested(4000).c_str()) != isXls);

    const QJsonObject read = saved(book);
    QCOMPARE(cellOf(read, "A1"_q)["cached"_q].toInt(), length);
    QCOMPARE(cellOf(read, "B11"_q)["cached"_q].toDouble(), 1.0 / 1024);
    QCOMPARE(cellOf(read, "C1"_q)["cached"_q].toInt(), 400);
    QCOMPARE(cellOf(read, "D1"_q)["cached"_q].toInt(), 1);
    QVERIFY(cellOf(read, "E1"_q)["cached"_q].isNull());
}

int main(int argc, char **argv)
{
    return testBothFormats<TestFormulas>(argc, argv);
}
#include "tst_workbook_formulas.moc"
