#include "testbook.h"

#include <cmath>

/** The content, look and value of cells, and what is refused. */
class TestCells : public QObject, private FormatFixture
{
    Q_OBJECT

private Q_SLOTS:
    void texts()
    {
        const QString emoji = "\U0001F600"_q;
        QStringList texts{emoji.repeated(16383) + QLatin1Char('x'), "a"_q + QChar(0xD800) + "b"_q,
                          "\x01x\x1F"_q + QChar(0xDE00) + QChar(0xD83D) + QChar(0xFFFE) + "y"_q,
                          "a\rb\r\n"_q};
        for (const char *text : {"Ľubomír Ťažký \U0001F600", "<a href=\"x\"> & ]]>'", "  a  ",
                                 "a\nb\tc\n", "_x0041_ __x000d_ _x12_", "007", "=1+1"})
            texts << QString::fromUtf8(text);
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
        texts[1] = "ab"_q; // what XML cannot hold goes, the rest stays
        texts[2] = "xy"_q;
        if (!isXls)
            texts[3] = "a_x000D_b_x000D_\n"_q; // which their reader leaves so, unlike programs
        const QJsonObject read = saved(book);
        for (int row = 0; row < texts.size(); ++row) {
            const QString cell = cellName(row, 0);
            QCOMPARE(cellValue(read, cell, "type").toString(), "text"_q);
            QCOMPARE(cellValue(read, cell).toString(), texts.at(row));
        }
    }

    void refused()
    {
        const TestBook book(isXls);
        Sheet *sheet = book->addSheet(L"S");
        const std::wstring pairs(16384, L'\U0001F600');
        for (const auto &text : {std::wstring(32768, L'x'), pairs}) {
            QVERIFY(sheet->writeNum(0, 0, 1)); // goes, too
            QVERIFY(!sheet->writeStr(0, 0, text.c_str()));
        }
        QVERIFY(!sheet->writeNum(1, 0, std::nan("")));
        QVERIFY(!sheet->writeFormula(1, 0, std::wstring(8193, L'1').c_str()));
        // The text of a formula is an .xlsx's own affair, an .xls has to translate it.
        for (const wchar_t *formula :
             {L"=SUM(A1)", L"=A1:B2", L"=1=1", L"=A1&\"a\"", L"=A1%", L"=A1^2", L"=S!A1",
              L"=A65537", L"=IW1", L"=(A1", L"=A1+", L"=1.2.3"}) {
            QCOMPARE(sheet->writeFormula(2, 0, formula), !isXls);
            QVERIFY(!sheet->writeStr(2, 0, nullptr));
        }
        QVERIFY(!sheet->writeNum(0, columns, 1));
        QVERIFY(!sheet->writeNum(rows, 0, 1));
        const QJsonObject read = saved(book);
        QCOMPARE(read["dimensions"_q].toString(), "A1"_q);
        QCOMPARE(read["cells"_q].toObject().size(), 0);
    }

    /** A copy differs in everything, which its source must not notice. */
    void looks()
    {
        const TestBook book(isXls);
        book->setDefaultFont(L"MS Shell Dlg 2", 10);
        book->setRgbMode(true);
        auto *bold = book->addFont();
        bold->setBold(true);
        Format *value = book->addFormat();
        value->setBorderColor(libxl::Color::Black);
        value->setBorderTop(libxl::BorderStyle::Thin);
        value->setBorderLeft(libxl::BorderStyle::Thin);
        value->setAlignV(libxl::AlignV::Top);
        value->setNumFormat(book->addCustomNumFormat(L"#0.00"));
        value->setWrap(true);
        Format *copy = book->addFormat(value);
        copy->setAlignH(libxl::AlignH::Left);
        copy->setAlignV(libxl::AlignV::Centre);
        copy->setWrap(false);
        copy->setNumFormat(0);
        copy->setBorderRight(libxl::BorderStyle::Double);
        copy->setBorderColor(libxl::Color::Red);
        QVERIFY(copy->setFont(bold));
        Sheet *sheet = book->addSheet(L"S");
        sheet->writeNum(0, 0, 1, value);
        sheet->writeNum(0, 1, 1, copy);
        QJsonObject read = saved(book);
        const QString font = "MS Shell Dlg 2 10";
        QCOMPARE(cellValue(read, "A1", "look").toString(),
                 font + ", general top wrap, #0.00, left thin FF000000, top thin FF000000");
        QCOMPARE(cellValue(read, "B1", "look").toString(),
                 font + " bold, left center, General, left thin FFFF0000, "
                        "right double FFFF0000, top thin FFFF0000");

        // An .xls names colours by their place in the palette in either mode.
        book->setRgbMode(false);
        read = saved(book);
        const QString side = isXls ? "top thin FF000000"_q : "top thin index 8"_q;
        QVERIFY(cellValue(read, "A1"_q, "look").toString().endsWith(side));
    }

    void widths()
    {
        const TestBook book(isXls);
        Sheet *sheet = book->addSheet(L"S");
        QVERIFY(sheet->setCol(1, 5, 20));
        QVERIFY(sheet->setCol(3, 3, 8)); // the later call wins where they meet
        QVERIFY(sheet->setCol(255, 255, 255));
        QVERIFY(!sheet->setCol(0, 0, 255.5));
        QVERIFY(sheet->setRow(0, 16));
        QVERIFY(sheet->setRow(6, 409.5));
        QVERIFY(!sheet->setRow(1, 410));
        sheet->writeNum(3, 0, 1);
        // The padding beside the digits, worked out by hand: 5 pixels in digits of 7, and of 8 when
        // a larger font becomes, late, the measure; cut to 1/256.
        for (const auto &[font, padding] :
             {std::pair(L"MS Shell Dlg 2", 0.7109375), std::pair(L"Times New Roman", 0.625)}) {
            book->setDefaultFont(font, font[0] == L'M' ? 10 : 12);
            const QJsonObject read = saved(book);
            const double width = 20 + padding;
            const QJsonObject expected{{"B"_q, width}, {"C"_q, width}, {"D"_q, 8 + padding},
                                       {"E"_q, width}, {"F"_q, width}, {"IV"_q, 255}};
            QCOMPARE(read["columnWidths"_q].toObject(), expected);
            QCOMPARE(read["rowHeights"_q].toObject(), QJsonObject({{"1"_q, 16}, {"7"_q, 409.5}}));
        }
    }

    /** The values of formulas: as the files have them, and as programs evaluate them. */
    void results()
    {
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
                     {L"C1+Z99", 0, "0"},
                     {L"A1/C1", "#DIV/0!", "#DIV/0!"},
                     {L"1+A2", "#DIV/0!", "#DIV/0!"},
                     {L"F4+F12/F3", -9.16, "-9.16"}, // formulas before and after
                     {L"A1*F13", -1040, "-1040"},
                     {L"-(+B1--50*2)", -104, "-104"},
                     {L"65536/4", 16384, "16384"},
                     {L"D1+1", unknown, "13"}};
        const TestBook book(isXls);
        Sheet *sheet = book->addSheet(L"Mes. report dochádzky");
        sheet->writeNum(0, 0, 10);
        sheet->writeNum(0, 1, 4);
        sheet->writeBlank(0, 2, nullptr);
        sheet->writeStr(0, 3, L"12");
        sheet->writeFormula(1, 0, L"=A1/0");
        sheet->writeFormula(2, 0, L"=A4"); // a cycle
        sheet->writeFormula(3, 0, L"=1+A3");
        int row = 0;
        for (const auto &entry : cases)
            QVERIFY(sheet->writeFormula(row++, 5, (L'=' + entry.expression).c_str()));

        const QJsonObject read = saved(book);
        QVERIFY(cellValue(read, "A3"_q, "cached").isNull());
        const QByteArrayList gnumeric = linesBy(Program::Gnumeric, file());
        const QByteArrayList office = linesBy(Program::LibreOffice, file());
        row = 0;
        for (const auto &entry : cases) {
            const QString expression = QString::fromStdWString(entry.expression);
            const QString cell = cellName(row, 5);
            QCOMPARE(cellValue(read, cell, "type").toString(), "formula"_q);
            QCOMPARE(cellValue(read, cell).toString(), isXls ? QString() : '=' + expression);
            QVERIFY2(cellValue(read, cell, "cached") == entry.stored, qPrintable(expression));
            for (const QByteArrayList &lines : {gnumeric, office})
                QVERIFY2(lines.value(row).split(',').last() == entry.shown, qPrintable(expression));
            ++row;
        }
    }
};

int main(int argc, char **argv)
{
    return testBothFormats<TestCells>(argc, argv);
}
#include "tst_workbook_cells.moc"
