#include "testbook.h"

#include <QJsonArray>

#include <cmath>

using libxl::AlignH;
using libxl::AlignV;
using libxl::BorderStyle;
using libxl::Color;

using Make = std::function<void(const TestBook &, Format *)>;
Q_DECLARE_METATYPE(Make)

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
    void looks_data();
    void looks();
    void copiesAreIndependent();
    void widths_data();
    void widths();
};

void TestLooks::looks_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<QString>("look");

    const auto row = [](const char *title, const char *look, const Make &make) {
        QTest::newRow(title) << make << QString::fromLatin1(look);
    };
    const char *black = "bottom:thin:FF000000 left:thin:FF000000 right:thin:FF000000 "
                        "top:thin:FF000000";
    const auto thinBlack = [](Format *format) {
        format->setBorderColor(Color::Black);
        format->setBorderTop(BorderStyle::Thin);
        format->setBorderBottom(BorderStyle::Thin);
        format->setBorderLeft(BorderStyle::Thin);
        format->setBorderRight(BorderStyle::Thin);
    };
    row("none", "General general bottom MS Shell Dlg 2 10", [](auto &, Format *) {});
    row("heading",
        "General center bottom MS Shell Dlg 2 10 bold bottom:medium:auto left:medium:auto "
        "right:medium:auto top:medium:auto",
        [](const TestBook &book, Format *format) {
            auto *font = book->addFont();
            font->setBold(true);
            format->setAlignH(AlignH::Centre);
            format->setBorder(BorderStyle::Medium);
            QVERIFY(format->setFont(font));
        });
    static const QByteArray id = QByteArray("General right center MS Shell Dlg 2 10 ") + black;
    row("number", id.constData(), [thinBlack](auto &, Format *format) {
        thinBlack(format);
        format->setAlignV(AlignV::Centre);
        format->setAlignH(AlignH::Right);
    });
    static const QByteArray value = QByteArray("#0.00 center top wrap MS Shell Dlg 2 10 ") + black;
    row("value", value.constData(), [thinBlack](const TestBook &book, Format *format) {
        thinBlack(format);
        format->setAlignV(AlignV::Top);
        format->setAlignH(AlignH::Centre);
        format->setNumFormat(book->addCustomNumFormat(L"#0.00"));
        format->setWrap(true);
    });
    row("palette indexes", "General general bottom MS Shell Dlg 2 10 left:dashed:%1",
        [](const TestBook &book, Format *format) {
            book->setRgbMode(false);
            format->setBorderLeft(BorderStyle::Dashed);
            format->setBorderColor(static_cast<Color>(63));
        });
    row("values outside are ignored", "General general bottom MS Shell Dlg 2 10",
        [](const TestBook &book, Format *format) {
            format->setAlignH(static_cast<AlignH>(8));
            format->setAlignV(static_cast<AlignV>(-1));
            format->setBorder(static_cast<BorderStyle>(14));
            format->setBorderColor(static_cast<Color>(7));
            format->setNumFormat(164);
            book->setDefaultFont(L"", 10);
            book->setDefaultFont(L"Arial", 0);
            QCOMPARE(book->addCustomNumFormat(L""), 0);
        });
}

void TestLooks::looks()
{
    QFETCH(Make, make);
    const TestBook book(isXls);
    book->setDefaultFont(L"MS Shell Dlg 2", 10);
    book->setRgbMode(true);
    Sheet *sheet = book->addSheet(L"S");
    Format *format = book->addFormat();
    make(book, format);
    QVERIFY(sheet->writeBlank(1, 1, format));
    QFETCH(QString, look);
    // An .xls has palette indexes only, which its reader looks up.
    if (look.contains("%1"_q))
        look = look.arg(isXls ? "FF333333"_q : "index 63"_q);
    QCOMPARE(lookOf(cellOf(saved(book), "B2"_q)), look);
}

void TestLooks::copiesAreIndependent()
{
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    Format *source = book->addFormat();
    source->setBorder(BorderStyle::Thin);
    source->setNumFormat(book->addCustomNumFormat(L"#0.00"));
    source->setWrap(true);
    source->setAlignH(AlignH::Centre);
    Format *copy = book->addFormat(source);
    copy->setAlignH(AlignH::Left);
    book->addFormat(source); // never used
    sheet->writeNum(0, 0, 1, source);
    sheet->writeNum(1, 0, 1, copy);
    const QJsonObject read = saved(book);
    QString expected = "#0.00 center bottom wrap Arial 10 bottom:thin:auto "
                       "left:thin:auto right:thin:auto top:thin:auto"_q;
    QCOMPARE(lookOf(cellOf(read, "A1"_q)), expected);
    QCOMPARE(lookOf(cellOf(read, "A2"_q)),
             expected.replace(QLatin1String("center"), QLatin1String("left")));
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
