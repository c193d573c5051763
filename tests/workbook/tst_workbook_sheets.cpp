#include "testbook.h"

#include <QJsonDocument>

#include <cmath>

using libxl::AlignH;
using libxl::AlignV;
using libxl::BorderStyle;
using libxl::Color;

namespace
{

/** One line for one look, so that a wrong one is seen whole. */
QString lookOf(const QJsonObject &cell)
{
    const QJsonObject font = cell["font"_q].toObject();
    QStringList words{cell["numberFormat"_q].toString(), cell["horizontal"_q].toString(),
                      cell["vertical"_q].toString(), cell["wrap"_q].toBool() ? "wrap"_q : "-"_q,
                      font["bold"_q].toBool() ? "bold"_q : "-"_q};
    const QJsonObject borders = cell["borders"_q].toObject();
    for (const QString &side : borders.keys()) {
        const QJsonObject border = borders[side].toObject();
        words << "%1:%2:%3"_q.arg(side, border["style"_q].toString(), border["color"_q].toString());
    }
    return words.join(QLatin1Char(' '));
}

} // namespace

/** Sheets as a whole: how cells, columns and rows look, pages, names, copies. */
class TestSheets : public QObject, private FormatFixture
{
    Q_OBJECT

private Q_SLOTS:
    void looks();
    void widths_data();
    void widths();
    void page();
    void names();
    void nothingFromStrangers();
};

void TestSheets::looks()
{
    const TestBook book(isXls);
    book->setDefaultFont(L"MS Shell Dlg 2", 10);
    book->setRgbMode(true);
    const int decimal = book->addCustomNumFormat(L"#0.00");
    auto *bold = book->addFont();
    bold->setBold(true);

    Format *heading = book->addFormat();
    heading->setAlignH(AlignH::Centre);
    heading->setBorder(BorderStyle::Medium);
    QVERIFY(heading->setFont(bold));
    Format *value = book->addFormat();
    value->setBorderColor(Color::Black);
    value->setBorderTop(BorderStyle::Thin);
    value->setBorderBottom(BorderStyle::Thin);
    value->setBorderLeft(BorderStyle::Thin);
    value->setAlignV(AlignV::Top);
    value->setAlignH(AlignH::Centre);
    value->setNumFormat(decimal);
    value->setWrap(true);
    // A copy differs in everything, which the source must not notice.
    Format *copy = book->addFormat(value);
    copy->setAlignH(AlignH::Left);
    copy->setAlignV(AlignV::Centre);
    copy->setWrap(false);
    copy->setNumFormat(0);
    copy->setBorderRight(BorderStyle::Double);
    copy->setBorderColor(Color::Red);
    copy->setFont(bold);
    Format *wrong = book->addFormat();
    wrong->setAlignH(static_cast<AlignH>(8));
    wrong->setAlignV(static_cast<AlignV>(-1));
    wrong->setBorder(static_cast<BorderStyle>(14));
    wrong->setBorderColor(static_cast<Color>(7));
    wrong->setNumFormat(decimal + 1);
    book->setDefaultFont(L"", 10);
    book->setDefaultFont(L"Arial", 0);
    QCOMPARE(book->addCustomNumFormat(L""), 0);

    const std::pair<Format *, QString> cases[] = {
        {nullptr, "General general bottom - -"_q},
        {wrong, "General general bottom - -"_q},
        {heading, "General center bottom - bold bottom:medium:auto left:medium:auto "
                  "right:medium:auto top:medium:auto"_q},
        {value, "#0.00 center top wrap - bottom:thin:FF000000 left:thin:FF000000 "
                "top:thin:FF000000"_q},
        {copy, "General left center - bold bottom:thin:FFFF0000 left:thin:FFFF0000 "
               "right:double:FFFF0000 top:thin:FFFF0000"_q}};
    Sheet *sheet = book->addSheet(L"S");
    int row = 0;
    for (const auto &[format, look] : cases)
        QVERIFY(sheet->writeNum(row++, 1, 1, format));
    QJsonObject read = saved(book);
    row = 0;
    for (const auto &[format, look] : cases) {
        const QJsonObject cell = cellOf(read, cellName(row++, 1));
        QCOMPARE(lookOf(cell), look);
        QCOMPARE(cell["font"_q].toObject()["size"_q].toInt(), 10);
        QCOMPARE(cell["font"_q].toObject()["name"_q].toString(), "MS Shell Dlg 2"_q);
    }

    // An .xls names colours by their place in the palette in either mode; its reader looks them up.
    book->setRgbMode(false);
    read = saved(book);
    QVERIFY(
        lookOf(cellOf(read, "B4"_q)).contains(isXls ? "top:thin:FF000000"_q : "thin:index 8"_q));
}

void TestSheets::widths_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<int>("points");
    QTest::addColumn<double>("padding"); // that is stored beside the digits

    // Worked out by hand: (chars * pixels of a digit + 5) / pixels of a digit, cut to 1/256.
    QTest::newRow("7 pixels") << "MS Shell Dlg 2" << 10 << 0.7109375;
    QTest::newRow("Calibri 11, 7 pixels") << "Calibri" << 11 << 0.7109375;
    QTest::newRow("Arial 8, 6 pixels") << "Arial" << 8 << 0.83203125;
    QTest::newRow("Times 12, 8 pixels") << "Times New Roman" << 12 << 0.625;
}

void TestSheets::widths()
{
    QFETCH(QString, font);
    QFETCH(int, points);
    QFETCH(double, padding);
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    QVERIFY(sheet->setCol(1, 5, 20));
    QVERIFY(sheet->setCol(3, 3, 8)); // the later call wins where they meet
    QVERIFY(sheet->setCol(255, 255, 255));
    QVERIFY(sheet->setCol(7, 7, 0));
    QVERIFY(!sheet->setCol(5, 4, 8));
    QVERIFY(!sheet->setCol(0, 16384, 8));
    QVERIFY(!sheet->setCol(0, 0, 255.5));
    QVERIFY(!sheet->setCol(0, 0, std::nan("")));
    QVERIFY(sheet->setRow(0, 16));
    QVERIFY(sheet->setRow(6, 409.5));
    QVERIFY(!sheet->setRow(1, 0));
    QVERIFY(!sheet->setRow(1, 410));
    QVERIFY(!sheet->setRow(-1, 16));
    sheet->writeNum(3, 0, 1);
    book->setDefaultFont(font.toStdWString().c_str(), points); // late, but it is the measure

    const QJsonObject read = saved(book);
    const double width = 20 + padding;
    const QJsonObject expected{{"B"_q, width}, {"C"_q, width}, {"D"_q, 8 + padding}, {"E"_q, width},
                               {"F"_q, width}, {"H"_q, 0},     {"IV"_q, 255}};
    QCOMPARE(read["columnWidths"_q].toObject(), expected);
    const QJsonObject heights{{"1"_q, 16}, {"7"_q, 409.5}};
    QCOMPARE(read["rowHeights"_q].toObject(), heights);
}

void TestSheets::page()
{
    const TestBook book(isXls);
    book->addSheet(L"S");
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
    sheet->split(1, 3);
    sheet->split(-1, 0);
    sheet->setPrintRepeatRows(0, 0);
    sheet->setPrintRepeatRows(3, 2);
    QVERIFY(book->addSheet(L"copy", sheet) != nullptr);

    QJsonObject untouched = saved(book);
    for (const QString &key : {"paper"_q, "fitToWidth"_q, "fitToHeight"_q})
        untouched.remove(key); // the formats differ in what they say where nothing was set
    const char *expected =
        R"({"name": "S", "dimensions": "A1", "cells": {}, "columnWidths": {}, "rowHeights": {},
            "freeze": null, "printTitles": null, "landscape": false, "fitToPage": false,
            "margins": {"left": 0.7, "right": 0.7, "top": 0.75, "bottom": 0.75, "header": 0.3,
            "footer": 0.3}, "footer": "", "showGridLines": true, "printGridLines": false})";
    QCOMPARE(untouched, QJsonDocument::fromJson(expected).object());
    expected =
        R"({"name": "Mes. report dochádzky", "dimensions": "A1", "cells": {}, "columnWidths": {},
            "rowHeights": {}, "freeze": "D2", "printTitles": "$1:$1", "landscape": true,
            "fitToPage": true, "fitToWidth": 1, "fitToHeight": 0, "paper": 9, "margins": {"left":
            0.1968, "right": 0.1968, "top": 0.1968, "bottom": 0.75, "header": 0.3, "footer": 0.5},
            "footer": "Strana &P/&N", "showGridLines": false, "printGridLines": true})";
    QJsonObject touched = QJsonDocument::fromJson(expected).object();
    QCOMPARE(readSheet(file(), 1), touched);
    touched["name"_q] = "copy"_q;
    QCOMPARE(readSheet(file(), 2), touched);
}

void TestSheets::names()
{
    const TestBook book(isXls);
    QVERIFY(book->addSheet(L"žltý KÔŇ") != nullptr);
    for (const wchar_t *title : {L"12345678901234567890123456789012", L"", L"'a", L"a'", L"a\tb",
                                 L"ŽLTÝ kôň", L"a[", L"a]", L"a:", L"a*", L"a?", L"a/", L"a\\"})
        QVERIFY2(book->addSheet(title) == nullptr, qPrintable(QString::fromWCharArray(title)));
    int sheet = 0;
    for (const wchar_t *title : {L"Denný report doch. 11-2023", L"a&b <c> \"d\" O'Neil",
                                 L"1234567890123456789012345678901"}) {
        book->addSheet(title)->setPrintRepeatRows(0, 1);
        const QJsonObject read = saved(book, ++sheet);
        QCOMPARE(read["name"_q].toString(), QString::fromWCharArray(title));
        QCOMPARE(read["printTitles"_q].toString(), "$1:$2"_q);
    }
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
