#include "support/workbookreader.h"
#include "testbook.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cfloat>
#include <cmath>

using libxl::AlignH;
using libxl::AlignV;
using libxl::BorderStyle;
using libxl::CellType;
using libxl::Color;

using Make = std::function<void(const TestBook &, Format *)>;
Q_DECLARE_METATYPE(Make)

namespace
{

QString name(int row, char column = 'A')
{
    return QLatin1Char(column) + QString::number(row + 1);
}

QJsonObject cellOf(const QJsonObject &sheet, const QString &reference)
{
    return sheet["cells"_q].toObject()[reference].toObject();
}

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

class TestWorkbook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void texts_data();
    void texts();
    void numbers();
    void refusedCells();
    void overwritten();
    void looks_data();
    void looks();
    void copiesAreIndependent();
    void widths_data();
    void widths();
    void page();
    void untouchedPage();
    void sheetNames_data();
    void sheetNames();
    void severalSheets();
    void nothingFromStrangers();

private:
    [[nodiscard]] QString file() const { return dir->filePath("book.xlsx"_q); }
    [[nodiscard]] QJsonObject saved(const TestBook &book, int sheet = 0) const;

    QScopedPointer<QTemporaryDir> dir;
};

void TestWorkbook::init()
{
    dir.reset(new QTemporaryDir);
    QVERIFY(dir->isValid());
}

/** The sheet as foreign readers see it; the file has passed our own check, too. */
QJsonObject TestWorkbook::saved(const TestBook &book, int sheet) const
{
    if (!book.save(file()))
        return {};
    const QByteArray faults = faultsOf(file());
    if (!faults.isEmpty())
        qCritical() << faults;
    return faults.isEmpty() ? readSheet(file(), sheet) : QJsonObject();
}

void TestWorkbook::texts_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("read");

    const auto row = [](const char *title, const QString &written, const QString &read = {}) {
        QTest::newRow(title) << written << (read.isNull() ? written : read);
    };
    row("empty", ""_q);
    row("Slovak and an emoji", "Ľubomír Ťažký \U0001F600"_q);
    row("markup", R"(<a href="x"> & ]]>')"_q);
    row("blanks around", "  a  "_q);
    row("lines and tabs", "a\nb\tc\n"_q);
    row("looks like an escape", "_x0041_ __x000d_ _x12_"_q);
    row("looks like a number", "007"_q);
    row("looks like a formula", "=1+1"_q);
    row("longest", QString(32767, QLatin1Char('x')));
    row("longest, in pairs", "\U0001F600"_q.repeated(16383) + QLatin1Char('x'));
    row("lone surrogate", "a"_q + QChar(0xD800) + "b"_q, "a\uFFFDb"_q);
    row("two the wrong way round", QString(QChar(0xDE00)) + QChar(0xD83D), "\uFFFD\uFFFD"_q);
}

void TestWorkbook::texts()
{
    QFETCH(QString, written);
    TestBook book("xlsx"_q);
    Sheet *sheet = book->addSheet(L"S");
    // Unit by unit: Qt's own conversion would repair what is broken.
    std::wstring wide;
    for (const QChar unit : written)
        wide += static_cast<wchar_t>(unit.unicode());
    QVERIFY(sheet->writeStr(0, 0, wide.c_str()));
    const QJsonObject cell = cellOf(saved(book), name(0));
    QCOMPARE(cell["type"_q].toString(), "text"_q);
    QTEST(cell["value"_q].toString(), "read");
}

void TestWorkbook::numbers()
{
    const double numbers[] = {0,        -0.0,   1,    -1,      0.1,
                              1.0 / 3,  1e15,   1e21, DBL_MAX, DBL_MIN,
                              4.9e-324, -12.34, 7.5,  100000,  123456789012345678.0};
    TestBook book("xlsx"_q);
    Sheet *sheet = book->addSheet(L"S");
    int row = 0;
    for (const double number : numbers)
        QVERIFY(sheet->writeNum(row++, 0, number));
    QVERIFY(sheet->writeNum(1048575, 16383, 5));
    const QJsonObject read = saved(book);
    row = 0;
    for (const double number : numbers) {
        const QJsonObject cell = cellOf(read, name(row++));
        QCOMPARE(cell["type"_q].toString(), "number"_q);
        QVERIFY2(cell["value"_q].toDouble() == number, qPrintable(name(row)));
    }
    QCOMPARE(cellOf(read, "XFD1048576"_q)["value"_q].toInt(), 5);
    QCOMPARE(read["dimensions"_q].toString(), "A1:XFD1048576"_q);
}

void TestWorkbook::refusedCells()
{
    TestBook book("xlsx"_q);
    TestBook other("xlsx"_q);
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
        [&](int row) { return sheet->writeFormula(row, 0, longFormula.c_str()); },
    };
    int row = 0;
    for (const auto &write : writes) {
        QVERIFY(sheet->writeNum(row, 0, 1)); // goes, too
        QVERIFY2(!write(row), qPrintable(name(row)));
        ++row;
    }
    QVERIFY(!sheet->writeNum(-1, 0, 1));
    QVERIFY(!sheet->writeNum(0, -1, 1));
    QVERIFY(!sheet->writeNum(0, 16384, 1));
    QCOMPARE(saved(book)["cells"_q].toObject().size(), 0);

    QVERIFY(!sheet->writeNum(1048576, 0, 1));
    QVERIFY2(!book.save(file()), "a row that does not fit must not be lost in silence");
}

void TestWorkbook::overwritten()
{
    TestBook plain("xlsx"_q);
    TestBook shuffled("xlsx"_q);
    Sheet *first = plain->addSheet(L"S");
    Sheet *second = shuffled->addSheet(L"S");
    const int rows = 97;
    const int columns = 11;
    for (int i = 0; i < rows * columns; ++i)
        first->writeStr(i / columns, i % columns, std::to_wstring(i).c_str());
    // 7 has no common factor with the number of cells: every place is visited, in a wild order.
    for (int pass = 0; pass < 5; ++pass) {
        for (int step = 0; step < rows * columns; ++step) {
            const int i = step * 7 % (rows * columns);
            const std::wstring text = std::to_wstring(pass == 4 ? i : -i);
            second->writeStr(i / columns, i % columns, text.c_str());
        }
    }
    QVERIFY(plain.save(file()));
    const QString other = dir->filePath("other"_q);
    QVERIFY(shuffled.save(other));
    QCOMPARE(bytesOf(other), bytesOf(file()));
}

void TestWorkbook::looks_data()
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
    row("palette indexes", "General general bottom MS Shell Dlg 2 10 left:dashed:index 63",
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

void TestWorkbook::looks()
{
    QFETCH(Make, make);
    TestBook book("xlsx"_q);
    book->setDefaultFont(L"MS Shell Dlg 2", 10);
    book->setRgbMode(true);
    Sheet *sheet = book->addSheet(L"S");
    Format *format = book->addFormat();
    make(book, format);
    QVERIFY(sheet->writeBlank(1, 1, format));
    QTEST(lookOf(cellOf(saved(book), "B2"_q)), "look");
}

void TestWorkbook::copiesAreIndependent()
{
    TestBook book("xlsx"_q);
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
    QCOMPARE(lookOf(cellOf(read, name(0))), expected);
    QCOMPARE(lookOf(cellOf(read, name(1))),
             expected.replace(QLatin1String("center"), QLatin1String("left")));
}

void TestWorkbook::widths_data()
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

void TestWorkbook::widths()
{
    QFETCH(QString, font);
    QFETCH(int, points);
    QFETCH(double, width8);
    QFETCH(double, width20);
    TestBook book("xlsx"_q);
    Sheet *sheet = book->addSheet(L"S");
    QVERIFY(sheet->setCol(1, 5, 20));
    QVERIFY(sheet->setCol(3, 3, 8)); // the later call wins where they meet
    QVERIFY(sheet->setCol(16383, 16383, 255));
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
                               {"XFD"_q, 255}};
    QCOMPARE(read["columnWidths"_q].toObject(), expected);
    const QJsonObject heights{{"1"_q, 16}, {"7"_q, 409.5}};
    QCOMPARE(read["rowHeights"_q].toObject(), heights);
}

void TestWorkbook::page()
{
    TestBook book("xlsx"_q);
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
    sheet->split(1, 0);
    sheet->split(-1, 0);
    sheet->setPrintRepeatRows(0, 0);
    sheet->setPrintRepeatRows(3, 2);
    sheet->writeNum(0, 0, 1);

    QJsonObject read = saved(book);
    read.remove("cells"_q);
    const QJsonObject margins{{"left"_q, 0.1968}, {"right"_q, 0.1968}, {"top"_q, 0.1968},
                              {"bottom"_q, 0.75}, {"header"_q, 0.3},   {"footer"_q, 0.5}};
    const QJsonObject expected{{"name"_q, "Mes. report dochádzky"_q},
                               {"dimensions"_q, "A1"_q},
                               {"columnWidths"_q, QJsonObject()},
                               {"rowHeights"_q, QJsonObject()},
                               {"freeze"_q, "A2"_q},
                               {"printTitles"_q, "$1:$1"_q},
                               {"landscape"_q, true},
                               {"fitToPage"_q, true},
                               {"fitToWidth"_q, 1},
                               {"fitToHeight"_q, 0},
                               {"paper"_q, 9},
                               {"margins"_q, margins},
                               {"footer"_q, "Strana &P/&N"_q},
                               {"showGridLines"_q, false},
                               {"printGridLines"_q, true}};
    QCOMPARE(read, expected);
}

void TestWorkbook::untouchedPage()
{
    TestBook book("xlsx"_q);
    book->addSheet(L"S");
    const QJsonObject read = saved(book);
    QCOMPARE(read["dimensions"_q].toString(), "A1"_q);
    for (const char *off : {"landscape", "fitToPage", "printGridLines"})
        QCOMPARE(read[QLatin1String(off)], QJsonValue(false));
    for (const char *none : {"freeze", "printTitles"})
        QVERIFY2(read[QLatin1String(none)].isNull(), none);
    QCOMPARE(read["showGridLines"_q], QJsonValue(true));
    QCOMPARE(read["footer"_q].toString(), QString());
    const QJsonObject margins = read["margins"_q].toObject();
    QCOMPARE(margins["left"_q].toDouble(), 0.7);
    QCOMPARE(margins["footer"_q].toDouble(), 0.3);
}

void TestWorkbook::sheetNames_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("accepted");

    const auto row = [](const char *title, bool accepted) {
        QTest::newRow(title) << QString::fromUtf8(title) << accepted;
    };
    row("Denný report doch. 11-2023", true);
    row("a&b <c> \"d\" O'Neil", true);
    row("1234567890123456789012345678901", true);
    row("12345678901234567890123456789012", false);
    row("", false);
    row("'a", false);
    row("a'", false);
    row("a\tb", false);
    row("ŽLTÝ kôň", false); // there is "žltý KÔŇ" already
    for (const char *forbidden : {"a[", "a]", "a:", "a*", "a?", "a/", "a\\"})
        row(forbidden, false);
}

void TestWorkbook::sheetNames()
{
    QFETCH(QString, title);
    QFETCH(bool, accepted);
    TestBook book("xlsx"_q);
    QVERIFY(book->addSheet(L"žltý KÔŇ") != nullptr);
    Sheet *sheet = book->addSheet(title.toStdWString().c_str());
    QCOMPARE(sheet != nullptr, accepted);
    if (!accepted)
        return;
    sheet->setPrintRepeatRows(0, 1);
    const QJsonObject read = saved(book, 1);
    QCOMPARE(read["name"_q].toString(), title);
    QCOMPARE(read["printTitles"_q].toString(), "$1:$2"_q);
}

void TestWorkbook::severalSheets()
{
    TestBook book("xlsx"_q);
    Sheet *first = book->addSheet(L"first");
    first->writeStr(0, 0, L"shared");
    first->split(2, 3);
    Sheet *copy = book->addSheet(L"copy", first);
    copy->writeStr(1, 0, L"own");
    book->addSheet(L"empty");
    QVERIFY(book->addSheet(L"no name twice", nullptr) != nullptr);
    const QJsonObject read = saved(book, 1);
    QCOMPARE(read["freeze"_q].toString(), "D3"_q);
    QCOMPARE(cellOf(read, name(0))["value"_q].toString(), "shared"_q);
    QCOMPARE(cellOf(read, name(1))["value"_q].toString(), "own"_q);
    QCOMPARE(readSheet(file(), 0)["cells"_q].toObject().size(), 1);
    QCOMPARE(readWorkbook(file())["sheets"_q].toArray().size(), 4);
}

void TestWorkbook::nothingFromStrangers()
{
    TestBook book("xlsx"_q);
    TestBook other("xlsx"_q);
    QVERIFY(book->addSheet(nullptr) == nullptr);
    QVERIFY(book->addSheet(L"S", other->addSheet(L"S")) == nullptr);
    QVERIFY(book->addFormat(other->addFormat()) == nullptr);
    QVERIFY(book->addFont(other->addFont()) == nullptr);
    QVERIFY(!book->addFormat()->setFont(other->addFont()));
    QVERIFY(!book->addFormat()->setFont(nullptr));
    QVERIFY(!book.save(file())); // no sheet yet
    QVERIFY(book->setLocale("UTF-8"));
    QVERIFY(book->setLocale("sk_SK.utf8"));
    QVERIFY(!book->setLocale("sk_SK.ISO8859-2"));
    QVERIFY(!book->setLocale(nullptr));
}

QTEST_GUILESS_MAIN(TestWorkbook)
#include "tst_workbook.moc"
