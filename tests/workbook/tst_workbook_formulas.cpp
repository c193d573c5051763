#include "testbook.h"

/** What formulas amount to: as the files say, and as programs reckon that read them. */
class TestFormulas : public QObject, private FormatFixture
{
    Q_OBJECT

private Q_SLOTS:
    void results();
    void refusedInXls();
    void chain();
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
                 {L"-A1+B1", -6, "-6"},
                 {L" a1 + $B$1 ", 14, "14"},
                 {L"1.5E+3*.5", 750, "750"},
                 {L"250%*A1", 25, "25"},
                 {L"C1+Z99", 0, "0"},
                 {L"A1/C1", "#DIV/0!", "#DIV/0!"},
                 {L"1+A2", "#DIV/0!", "#DIV/0!"},
                 {L"D1+1", unknown, "13"},
                 {L"-B1^2", unknown, "16"},
                 {isXls ? L"2^3^2" : L"(2^3)^2", unknown, "64"},
                 {L"SUM(A1:B1,$A$1,5,(A1))", unknown, "39"},
                 {L"AVERAGE(B1:A1)+MIN(A1,B1)*MAX(A1,1.5)", unknown, "47"},
                 {L"ROUND(A1/3,2)", unknown, "3.33"},
                 {L"IF(A1>B1,\"\"\"a\"&\"č\",0)&\"!\"", unknown, "\"\"\"ač!\""},
                 {L"IF(A1>=10,SUM(A1,B1))", unknown, "14"}};
    const TestBook book(isXls);
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
            QVERIFY2(lines.value(row).split(',').last() == entry.shown, qPrintable(expression));
        ++row;
    }
}

/** An .xlsx holds the text of whatever it is given, an .xls only what we can translate. */
void TestFormulas::refusedInXls()
{
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    const std::wstring deep = std::wstring(4000, L'(') + L'1' + std::wstring(4000, L')');
    int row = 0;
    for (const wchar_t *expression :
         {L"A65537", L"IW1", L"S!A1", L"A1:B1", L"A1+", L"(A1", L"1e999", L"\"text", L"FOO(1)",
          L"ABS(1,2)", L"TRUE", deep.c_str()}) {
        sheet->writeNum(row, 0, 1); // goes, too
        QVERIFY2(sheet->writeFormula(row++, 0, expression) != isXls,
                 qPrintable(QString::fromWCharArray(expression)));
    }
    const QJsonObject read = saved(book);
    QCOMPARE(read["name"_q].toString(), "S"_q);
    QCOMPARE(read["cells"_q].toObject().size(), isXls ? 0 : row);
}

/** Each cell needs the one below it: how deep that goes is not the stack's affair. */
void TestFormulas::chain()
{
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    const int length = 20000;
    for (int row = 1; row < length; ++row)
        sheet->writeFormula(row - 1, 0, (L"=1+A" + std::to_wstring(row + 1)).c_str());
    sheet->writeNum(length - 1, 0, 1);
    QCOMPARE(cellOf(saved(book), "A1"_q)["cached"_q].toInt(), length);
}

int main(int argc, char **argv)
{
    return testBothFormats<TestFormulas>(argc, argv);
}
#include "tst_workbook_formulas.moc"
