#include "testbook.h"

#include <QJsonArray>

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
    const auto text = [](const QJsonValue &value) {
        return value.toVariant().toString();
    };
    QStringList words{text(cell["numberFormat"_q]), text(cell["horizontal"_q]),
                      text(cell["vertical"_q])};
    if (cell["wrap"_q].toBool())
        words << "wrap"_q;
    const QJsonObject font = cell["font"_q].toObject();
    words << text(font["name"_q]) << text(font["size"_q]);
    if (font["bold"_q].toBool())
        words << "bold"_q;
    const QJsonObject borders = cell["borders"_q].toObject();
    for (const QString &side : borders.keys())
        words << side + QLatin1Char(':') + text(borders[side].toObject()["style"_q]) +
                     QLatin1Char(':') + text(borders[side].toObject()["color"_q]);
    return words.join(QLatin1Char(' '));
}

} // namespace

/** How cells, columns and rows look. */
class TestLooks : public QObject, private FormatFixture
{
    Q_OBJECT

public:
    explicit TestLooks(bool binary)
        : FormatFixture(binary)
    {
    }

private Q_SLOTS:
    void looks();
    void widths_data();
    void widths();
};

void TestLooks::looks()
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
    value->setBorderRight(BorderStyle::Thin);
    value->setAlignV(AlignV::Top);
    value->setAlignH(AlignH::Centre);
    value->setNumFormat(decimal);
    value->setWrap(true);
    // Each copy differs from its source in one thing, which the source must not notice.
    Format *left = book->addFormat(value);
    left->setAlignH(AlignH::Left);
    Format *middle = book->addFormat(left);
    middle->setAlignV(AlignV::Centre);
    Format *flowing = book->addFormat(middle);
    flowing->setWrap(false);
    Format *general = book->addFormat(flowing);
    general->setNumFormat(0);
    Format *open = book->addFormat(general);
    open->setBorderRight(BorderStyle::None);
    Format *red = book->addFormat(open);
    red->setBorderColor(Color::Red);
    Format *loud = book->addFormat(red);
    loud->setFont(bold);
    Format *wrong = book->addFormat();
    wrong->setAlignH(static_cast<AlignH>(8));
    wrong->setAlignV(static_cast<AlignV>(-1));
    wrong->setBorder(static_cast<BorderStyle>(14));
    wrong->setBorderColor(static_cast<Color>(7));
    wrong->setNumFormat(decimal + 1);
    book->setDefaultFont(L"", 10);
    book->setDefaultFont(L"Arial", 0);
    QCOMPARE(book->addCustomNumFormat(L""), 0);

    const QString font = " MS Shell Dlg 2 10"_q;
    const auto borders = [](const QString &sides, const QString &line) {
        QString text;
        for (const QString &side : sides.split(QLatin1Char(' ')))
            text += QLatin1Char(' ') + side + QLatin1Char(':') + line;
        return text;
    };
    const QString all = "bottom left right top"_q;
    const QString black = borders(all, "thin:FF000000"_q);
    const std::pair<Format *, QString> cases[] = {
        {nullptr, "General general bottom"_q + font},
        {wrong, "General general bottom"_q + font},
        {heading, "General center bottom"_q + font + " bold"_q + borders(all, "medium:auto"_q)},
        {value, "#0.00 center top wrap"_q + font + black},
        {left, "#0.00 left top wrap"_q + font + black},
        {middle, "#0.00 left center wrap"_q + font + black},
        {flowing, "#0.00 left center"_q + font + black},
        {general, "General left center"_q + font + black},
        {open, "General left center"_q + font + borders("bottom left top"_q, "thin:FF000000"_q)},
        {red, "General left center"_q + font + borders("bottom left top"_q, "thin:FFFF0000"_q)},
        {loud, "General left center"_q + font + " bold"_q +
                   borders("bottom left top"_q, "thin:FFFF0000"_q)},
    };
    Sheet *sheet = book->addSheet(L"S");
    int row = 0;
    for (const auto &[format, look] : cases)
        QVERIFY(sheet->writeNum(row++, 1, 1, format));
    QJsonObject read = saved(book);
    row = 0;
    for (const auto &[format, look] : cases)
        QCOMPARE(lookOf(cellOf(read, "B%1"_q.arg(++row))), look);

    // An .xls names colours by their place in the palette in either mode; its reader looks them up.
    book->setRgbMode(false);
    read = saved(book);
    QVERIFY(
        lookOf(cellOf(read, "B4"_q)).contains(isXls ? "top:thin:FF000000"_q : "thin:index 8"_q));
}

void TestLooks::widths_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<int>("points");
    QTest::addColumn<double>("width8");  // stored for setCol(8)
    QTest::addColumn<double>("width20"); // stored for setCol(20)

    // Worked out by hand: (chars * pixels of a digit + 5) / pixels of a digit, cut to 1/256.
    QTest::newRow("7 pixels") << "MS Shell Dlg 2" << 10 << 8.7109375 << 20.7109375;
    QTest::newRow("Calibri 11, 7 pixels") << "Calibri" << 11 << 8.7109375 << 20.7109375;
    QTest::newRow("Arial 8, 6 pixels") << "Arial" << 8 << 8.83203125 << 20.83203125;
    QTest::newRow("Times 12, 8 pixels") << "Times New Roman" << 12 << 8.625 << 20.625;
}

void TestLooks::widths()
{
    QFETCH(QString, font);
    QFETCH(int, points);
    QFETCH(double, width8);
    QFETCH(double, width20);
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
    const QJsonObject expected{{"B"_q, width20}, {"C"_q, width20}, {"D"_q, width8},
                               {"E"_q, width20}, {"F"_q, width20}, {"H"_q, 0},
                               {"IV"_q, 255}};
    QCOMPARE(read["columnWidths"_q].toObject(), expected);
    const QJsonObject heights{{"1"_q, 16}, {"7"_q, 409.5}};
    QCOMPARE(read["rowHeights"_q].toObject(), heights);
}

int main(int argc, char **argv)
{
    return testBothFormats<TestLooks>(argc, argv);
}
#include "tst_workbook_looks.moc"
