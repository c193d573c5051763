#include "workbook/xlsx/deflater.h"

#include <QtTest>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <zlib.h>

using Phrases = std::vector<workbook::Phrase>;

Q_DECLARE_METATYPE(std::string)

namespace
{

std::string repeated(const std::string &piece, int times)
{
    std::string text;
    for (; times > 0; --times)
        text += piece;
    return text;
}

/** Any bytes; those below `kinds`, so that few kinds make many short matches. */
std::string randomBytes(std::size_t size, unsigned kinds)
{
    std::mt19937 random(kinds);
    std::string text(size, '\0');
    for (char &byte : text)
        byte = static_cast<char>(random() % kinds);
    return text;
}

/** Symbols so unequal in number that the best code would have words of more than 15 bits. */
std::string fibonacci()
{
    std::string text;
    int times = 1;
    int before = 0;
    for (char byte = 'A'; byte <= 'S'; ++byte) {
        for (int i = 0; i < times; ++i)
            text += byte;
        before = std::exchange(times, times + before);
    }
    std::shuffle(text.begin(), text.end(), std::mt19937(1)); // not to be matched
    return text;
}

/** What zlib finds in the stream; nothing if it is broken or goes on behind its end. */
std::string inflated(std::string_view packed, std::size_t size)
{
    std::string text(size + 1, '\0');
    z_stream stream{};
    inflateInit2(&stream, -15);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef *>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    const bool ended = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.avail_in == 0;
    text.resize(ended ? stream.total_out : 0);
    inflateEnd(&stream);
    return text;
}

} // namespace

/** The compressor against zlib's inflate, on texts that reach its limits. */
class TestDeflate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesBack_data()
    {
        QTest::addColumn<std::string>("text");
        QTest::addColumn<double>("most"); // of the size before

        const std::string noise = randomBytes(32768, 256);
        QTest::newRow("nothing") << std::string() << 100.0;
        QTest::newRow("one byte") << std::string("a") << 100.0;
        QTest::newRow("three bytes") << std::string("abc") << 100.0;
        QTest::newRow("one byte, often") << std::string(1000000, 'a') << 0.002;
        QTest::newRow("longest copies") << repeated(noise.substr(0, 259), 400) << 0.02;
        QTest::newRow("noise") << randomBytes(300000, 256) << 1.01;
        QTest::newRow("two kinds of bytes") << randomBytes(300000, 2) << 0.2;
        QTest::newRow("farthest distance") << noise + noise << 0.51;
        QTest::newRow("too far") << noise + "x" + noise << 1.01;
        QTest::newRow("code too long") << fibonacci() << 0.4;
    }

    void comesBack()
    {
        QFETCH(std::string, text);
        QFETCH(double, most);
        // In pieces, too: matches reach back over their borders.
        for (const std::size_t piece : {text.size() + 1, std::size_t{100000}, std::size_t{777}}) {
            workbook::Deflater deflater;
            std::string packed;
            for (std::size_t at = 0; at < text.size(); at += piece)
                append(deflater, std::string_view(text).substr(at, piece), packed);
            finish(deflater, packed);
            QCOMPARE(inflated(packed, text.size()), text);
            if (piece > text.size() && !text.empty())
                QVERIFY2(double(packed.size()) <= most * double(text.size()) + 1,
                         qPrintable(QString::number(packed.size())));
        }
    }

    /** Phrases are hints: the stream is right whatever they say. */
    void phrasesMayBeWrong()
    {
        std::mt19937 random(1);
        workbook::Deflater deflater;
        for (int round = 0; round < 300; ++round) {
            const std::string text = randomBytes(random() % 3000, 1 + random() % 4);
            Phrases phrases;
            for (std::size_t at = random() % 50; at < text.size(); at += random() % 50) {
                const std::size_t end = std::min(text.size(), at + random() % 400);
                phrases.push_back({at, end});
                at = end;
            }
            std::string packed;
            append(deflater, text, packed, phrases);
            append(deflater, text, packed);
            finish(deflater, packed);
            QCOMPARE(inflated(packed, 2 * text.size()), text + text);
        }
    }

private:
    static void append(workbook::Deflater &deflater, std::string_view text, std::string &packed,
                       const Phrases &phrases = {})
    {
        deflater.append(text, phrases);
        packed += deflater.packed();
        deflater.clear();
    }

    static void finish(workbook::Deflater &deflater, std::string &packed)
    {
        deflater.finish();
        packed += deflater.packed();
        deflater.clear();
    }
};

QTEST_APPLESS_MAIN(TestDeflate)
#include "tst_workbook_deflate.moc"
