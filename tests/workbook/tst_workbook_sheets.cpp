#include "testbook.h"

#include <QJsonDocument>

using libxl::AlignH;
using libxl::AlignV;
using libxl::BorderStyle;
using libxl::Color;

/** Sheets as a whole: how cells, columns and rows look, pages, names, copies. */
class TestSheets : public QObject, private FormatFixture
{
    Q_OBJECT

private Q_SLOTS:
    void looks();
    void widths();
    void page();
    void names();
};

void TestSheets::looks()
{
    const TestBook book(isXls);
    book->setDefaultFont(L"MS Shell Dlg 2", 10);
    book->setRgbMode(true);
    auto *bold = book->addFont();
    bold->setBold(true);

    Format *heading = book->addFormat();
    heading->setAlignH(AlignH::Centre);
    heading->setBorder(BorderStyle::Medium);
    QVERIFY(heading->setFont(bold));
    Format *value = book->addFormat();
    value->setBorderColor(Color::Black);
    value->setBorderTop(BorderStyle::Thin);
    value->setBorderLeft(BorderStyle::Thin);
    value->setAlignV(AlignV::Top);
    value->setNumFormat(book->addCustomNumFormat(L"#0.00"));
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

    const QString font = "MS Shell Dlg 2 10"_q;
    const std::pair<Format *, QString> cases[] = {
        {nullptr, font + ", general bottom, General"_q},
        {heading, font + " bold, center bottom, General, medium auto"_q},
        {value, font + ", general top wrap, #0.00, left thin FF000000, top thin FF000000"_q},
        {copy, font + " bold, left center, General, left thin FFFF0000, right double FFFF0000, "
                      "top thin FFFF0000"_q}};
    Sheet *sheet = book->addSheet(L"S");
    int row = 0;
    for (const auto &[format, look] : cases)
        QVERIFY(sheet->writeNum(row++, 1, 1, format));
    QJsonObject read = saved(book);
    row = 0;
    for (const auto &[format, look] : cases)
        QCOMPARE(cellOf(read, cellName(row++, 1))["look"_q].toString(), look);

    // An .xls names colours by their place in the palette in either mode; its reader looks them up.
    book->setRgbMode(false);
    read = saved(book);
    QVERIFY(cellOf(read, "B3"_q)["look"_q].toString().endsWith(isXls ? "top thin FF000000"_q
                                                                     : "top thin index 8"_q));
}

void TestSheets::widths()
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
    // The padding beside the digits, worked out by hand: 5 pixels in digits of 7, and of 8 when a
    // larger font becomes, late, the measure; cut to 1/256.
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
    sheet->setPrintFit(1, 0);
    QVERIFY(sheet->setFooter(L"Strana &P/&N", 0.5));
    sheet->split(1, 3);
    sheet->setPrintRepeatRows(0, 0);
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
    for (const wchar_t *title :
         {L"12345678901234567890123456789012", L"", L"'a", L"ŽLTÝ kôň", L"a["})
        QVERIFY(book->addSheet(title) == nullptr);
    int sheet = 0;
    for (const wchar_t *title : {L"Denný report doch. 11-2023", L"a&b <c> \"d\" O'Neil",
                                 L"1234567890123456789012345678901"}) {
        book->addSheet(title)->setPrintRepeatRows(0, 1);
        const QJsonObject read = saved(book, ++sheet);
        QCOMPARE(read["name"_q].toString(), QString::fromWCharArray(title));
        QCOMPARE(read["printTitles"_q].toString(), "$1:$2"_q);
    }
}

int main(int argc, char **argv)
{
    return testBothFormats<TestSheets>(argc, argv);
}
#include "tst_workbook_sheets.moc"
