#include "testbook.h"
#include "workbook/bytesink.h"
#include "workbook/xls/compoundfile.h"

#include <QFileInfo>

using libxl::BorderStyle;

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
    void equalFormatsAreShared();
};

void TestLimits::container_data()
{
    QTest::addColumn<int>("bytes");

    // Where the stream leaves the smallest size, and where one more sector needs one more sector
    // of tables: 109 of them are named in the header, each 127 more need an overflow sector.
    const auto around = [](int bytes) {
        for (const int size : {bytes - 1, bytes, bytes + 1, bytes + 512})
            QTest::addRow("%d", size) << size;
    };
    QTest::newRow("empty") << 0;
    around(4096);
    around(126 * 512);
    around(7087104);
    around(15279616);
    around(15344640);
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

    QProcess reader;
    reader.start("/usr/bin/python3"_q, {QStringLiteral(AUTOREPORT_CHECK_XLS), path});
    QVERIFY(reader.waitForFinished());
    QCOMPARE(reader.readAllStandardError(), QByteArray());
    QByteArray expected = QByteArray::fromStdString(stream);
    if (bytes < 4096)
        expected += QByteArray(4096 - bytes, '\0');
    QVERIFY(reader.readAllStandardOutput() == expected);
}

/** All rows of an .xls, and strings of all lengths across the limits of records. */
void TestLimits::fullXls()
{
    const FormatFixture fixture(true);
    const TestBook book(true);
    Sheet *sheet = book->addSheet(L"S");
    QByteArray expected;
    for (int row = 0; row < 65536; ++row) {
        const int length = 1 + row * 37 % 700;
        const QString text = QString::number(row) + QString(length, QChar(row % 3 ? 0xE1 : 0x10D));
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
    QCOMPARE(faultsOf(fixture.file()), QByteArray());
    QVERIFY(fixture.byGnumeric().join('\n') == expected);
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

void TestLimits::manyFormats()
{
    QFETCH(bool, isXls);
    QFETCH(int, count);
    const FormatFixture fixture(isXls);
    const TestBook book(isXls);
    Sheet *sheet = book->addSheet(L"S");
    // Format i + 1 is a number of four digits to the base of 14, a digit for each side.
    const auto style = [](int i, int divisor) {
        return static_cast<BorderStyle>((i + 1) / divisor % 14);
    };
    for (int i = 0; i < count; ++i) {
        Format *format = book->addFormat();
        format->setBorderLeft(style(i, 1));
        format->setBorderRight(style(i, 14));
        format->setBorderTop(style(i, 14 * 14));
        format->setBorderBottom(style(i, 14 * 14 * 14));
        sheet->writeBlank(i / 256, i % 256, format);
    }
    QTEST(book.save(fixture.file()), "fits");
    if (!QTest::currentTestFailed() && QFileInfo::exists(fixture.file())) {
        const QJsonObject read = fixture.saved(book);
        const QJsonObject borders = cellOf(read, "FD16"_q)["borders"_q].toObject(); // number 4000
        QCOMPARE(borders["left"_q].toObject()["style"_q].toString(), "mediumDashDot"_q);
        QCOMPARE(borders["right"_q].toObject()["style"_q].toString(), "thick"_q);
        QCOMPARE(borders["top"_q].toObject()["style"_q].toString(), "double"_q);
        QCOMPARE(borders["bottom"_q].toObject()["style"_q].toString(), "thin"_q);
        QCOMPARE(read["cells"_q].toObject().size(), count);
    }
}

void TestLimits::equalFormatsAreShared()
{
    const FormatFixture fixture(true);
    const TestBook book(true);
    Sheet *sheet = book->addSheet(L"S");
    for (int i = 0; i < 10000; ++i) {
        book->addFont();
        Format *format = book->addFormat();
        format->setWrap(true);
        sheet->writeNum(i, 0, 1, format);
    }
    QVERIFY(book.save(fixture.file()));
}

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_workbook_limits.moc"
