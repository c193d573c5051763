#include "testbook.h"
#include "workbook/bytesink.h"
#include "workbook/xls/compoundfile.h"

#include <QFileInfo>

/** Books as large as the formats allow, and the edges inside an .xls. */
class TestLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void container_data();
    void container();
    void fullXls();
    void manyFormats_data();
    void manyFormats();
};

void TestLimits::container_data()
{
    QTest::addColumn<int>("bytes");

    // Where the stream leaves the smallest size, and where one more sector needs one more sector
    // of tables: 109 of them are named in the header, each 127 more need an overflow sector.
    QTest::newRow("empty") << 0;
    for (const int edge : {4096, 126 * 512, 7087104, 15279616, 15344640}) {
        for (const int size : {edge - 1, edge, edge + 1, edge + 512})
            QTest::addRow("%d", size) << size;
    }
}

void TestLimits::container()
{
    QFETCH(int, bytes);
    const QTemporaryDir dir;
    const QString path = dir.filePath("container"_q);
    std::string stream;
    for (int i = 0; i < bytes; ++i)
        stream += static_cast<char>(i ^ i >> 9);
    workbook::ByteSink sink(path.toStdString());
    workbook::CompoundFile file(sink);
    sink.append(stream);
    file.finish();
    QVERIFY(sink.commit());
    stream.resize(std::max(stream.size(), std::size_t(4096)), '\0');
    QVERIFY(readRaw("--stream"_q, path) == QByteArray::fromStdString(stream));
}

/** All rows of an .xls, and strings of all lengths and widths across the limits of records. */
void TestLimits::fullXls()
{
    FormatFixture::nextIsXls = true;
    const FormatFixture fixture;
    const TestBook book(true);
    Sheet *sheet = book->addSheet(L"S");
    const QString letters[] = {"\U0001F600"_q, "á"_q, "č"_q, "x"_q};
    QByteArray expected;
    for (int row = 0; row < fixture.rows; ++row) {
        const QString text = QString::number(row) + letters[row % 4].repeated(1 + row * 37 % 700);
        QVERIFY(sheet->writeStr(row, 0, text.toStdWString().c_str()));
        expected += text.toUtf8();
        for (int column = 1; column < 15; ++column) {
            const int number = row * column % 1000;
            sheet->writeNum(row, column, number / 4.0);
            expected += ',' + QByteArray::number(number / 4.0);
        }
        expected += '\n';
    }
    QVERIFY(book.save(fixture.file()));
    QVERIFY(QFileInfo(fixture.file()).size() > 40000000);
    QVERIFY(readRaw("--values"_q, fixture.file()) == expected);
    QVERIFY(linesBy(Program::LibreOffice, fixture.file()).join('\n') == expected);

    QVERIFY(!sheet->writeNum(fixture.rows, 0, 1));
    QVERIFY(!book.save(fixture.file("again"_q)));
    QVERIFY(!QFileInfo::exists(fixture.file("again"_q)));
}

void TestLimits::manyFormats_data()
{
    QTest::addColumn<bool>("isXls");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("fits");

    QTest::newRow("as many as an .xls has") << true << 4000 << true;
    QTest::newRow("one more") << true << 4001 << false;
    QTest::newRow("an .xlsx has more") << false << 4001 << true;
}

/** Equal formats count once. */
void TestLimits::manyFormats()
{
    QFETCH(bool, isXls);
    QFETCH(int, count);
    FormatFixture::nextIsXls = isXls;
    const FormatFixture fixture;
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    // Format i + 1 is a number of four digits to the base of 14, a digit for each side.
    const auto style = [](int i, int divisor) {
        return static_cast<libxl::BorderStyle>((i + 1) / divisor % 14);
    };
    for (int i = 0; i < 2 * count; ++i) {
        Format *format = book->addFormat();
        format->setBorderLeft(style(i % count, 1));
        format->setBorderRight(style(i % count, 14));
        format->setBorderTop(style(i % count, 14 * 14));
        format->setBorderBottom(style(i % count, 14 * 14 * 14));
        sheet->writeBlank(i / 256, i % 256, format);
    }
    const QJsonObject read = fixture.saved(book);
    QTEST(!read.isEmpty(), "fits");
    QCOMPARE(QFileInfo::exists(fixture.file()), !read.isEmpty());
    if (read.isEmpty())
        return;
    QCOMPARE(read["cells"_q].toObject().size(), 2 * count);
    const QJsonObject borders = cellOf(read, "FD16"_q)["borders"_q].toObject(); // number 4000
    const std::pair<QString, QString> sides[] = {{"left"_q, "mediumDashDot"_q},
                                                 {"right"_q, "thick"_q},
                                                 {"top"_q, "double"_q},
                                                 {"bottom"_q, "thin"_q}};
    for (const auto &[side, name] : sides)
        QCOMPARE(borders[side].toObject()["style"_q].toString(), name);
}

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_workbook_limits.moc"
