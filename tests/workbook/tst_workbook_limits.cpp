#include "testbook.h"
#include "workbook/writing/bytesink.h"
#include "workbook/xls/compoundfile.h"

/** Books as large as the formats allow, and the edges inside an .xls. */
class TestLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Where the stream leaves the smallest size, and where one more sector needs one more sector
    /// of tables: 109 of them are named in the header, each 127 more need an overflow sector.
    void container()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath("container"_q);
        for (const int edge : {4096, 126 * 512, 7087104, 15279616, 15344640}) {
            for (const int bytes : {edge - 1, edge, edge + 1, edge + 512}) {
                std::string stream;
                for (int i = 0; i < bytes; ++i)
                    stream += static_cast<char>(i ^ i >> 9);
                workbook::ByteSink sink(path.toStdString());
                workbook::CompoundFile file(sink);
                sink.append(stream);
                file.finish();
                QVERIFY(sink.commit());
                stream.resize(std::max(stream.size(), std::size_t(4096)), '\0');
                const QByteArray read = readRaw("--stream"_q, path);
                QVERIFY2(read == QByteArray::fromStdString(stream),
                         qPrintable(QString::number(bytes)));
            }
        }
    }

    /** All rows of an .xls, and strings of all lengths and widths across the limits of records. */
    void fullXls()
    {
        FormatFixture::nextIsXls = true;
        const FormatFixture fixture;
        const TestBook book(true);
        Sheet *sheet = book->addSheet(L"S");
        const QString chars[] = {"\U0001F600"_q, "á"_q, "č"_q, "x"_q};
        QByteArray expected;
        for (int row = 0; row < fixture.rows; ++row) {
            const QString text = QString::number(row) + chars[row % 4].repeated(1 + row * 37 % 700);
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
    }

    /** Equal formats count once; there is room for 4,000. */
    void manyFormats()
    {
        FormatFixture::nextIsXls = true;
        const FormatFixture fixture;
        for (const int count : {4001, 4000}) {
            const TestBook book(true);
            Sheet *sheet = book->addSheet(L"S");
            for (int i = 0; i < 2 * count; ++i) {
                // Numbers to the base of 14, a digit for each side.
                const auto digit = [number = i % count + 1](int divisor) {
                    return static_cast<libxl::BorderStyle>(number / divisor % 14);
                };
                Format *format = book->addFormat();
                format->setBorderLeft(digit(1));
                format->setBorderRight(digit(14));
                format->setBorderTop(digit(14 * 14));
                format->setBorderBottom(digit(14 * 14 * 14));
                sheet->writeBlank(i / 256, i % 256, format);
            }
            QCOMPARE(book.save(fixture.file()), count == 4000);
            QCOMPARE(QFileInfo::exists(fixture.file()), count == 4000);
        }
        const QJsonObject cells = readSheet(fixture.file())["cells"_q].toObject();
        QCOMPARE(cells.size(), 8000);
        const QString look = cells["FD16"_q].toObject()["look"_q].toString(); // number 4000
        for (const char *border :
             {"left mediumDashDot", "right thick", "top double", "bottom thin"})
            QVERIFY2(look.contains(QLatin1String(border)), qPrintable(look));
    }
};

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_workbook_limits.moc"
