#include "workbook/xlsx/deflater.h"

#include "support/testdata.h"

#include <algorithm>
#include <random>

#include <zlib.h>

namespace
{

/** Any bytes; those below `kinds`, so that few kinds make many short matches. */
QByteArray randomBytes(std::size_t size, std::size_t kinds)
{
    std::mt19937 random(kinds);
    QByteArray text(int(size), '\0');
    for (char &byte : text)
        byte = static_cast<char>(random() % kinds);
    return text;
}

/** Symbols so unequal in number that the best code would have words of more than 15 bits. */
QByteArray fibonacci()
{
    QByteArray text;
    int times = 1;
    int before = 0;
    for (char byte = 'A'; byte <= 'S'; ++byte) {
        text += QByteArray(times, byte);
        before = std::exchange(times, times + before);
    }
    std::shuffle(text.begin(), text.end(), std::mt19937(1)); // not to be matched
    return text;
}

std::string_view view(const QByteArray &text)
{
    return {text.constData(), std::size_t(text.size())};
}

/** What zlib finds in the stream; nothing if it is broken or goes on behind its end. */
QByteArray inflated(std::string_view packed, int size)
{
    QByteArray text(size + 1, '\0');
    z_stream stream{};
    inflateInit2(&stream, -15);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef *>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    const bool ended = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.avail_in == 0;
    text.resize(ended ? int(stream.total_out) : 0);
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
        const QByteArray noise = randomBytes(32768, 256);
        addRow("nothing", QByteArray(), 100.0);
        addRow("one byte", QByteArray("a"), 100.0);
        addRow("three bytes", QByteArray("abc"), 100.0);
        addRow("one byte, often", QByteArray(1000000, 'a'), 0.002);
        addRow("longest copies", noise.left(259).repeated(400), 0.02);
        addRow("noise", randomBytes(300000, 256), 1.01);
        addRow("two kinds of bytes", randomBytes(300000, 2), 0.2);
        addRow("farthest distance", QByteArray(noise + noise), 0.51);
        addRow("too far", QByteArray(noise + "x" + noise), 1.01);
        addRow("code too long", fibonacci(), 0.4);
    }

    void comesBack()
    {
        const auto [text, most] = fetch<QByteArray, double>(); // most: of the size before
        workbook::Deflater deflater;
        // In pieces, too: matches reach back over their borders.
        for (const int piece : {text.size() + 1, 100000, 777}) {
            for (const bool hints : {false, true}) {
                for (int at = 0; at < text.size(); at += piece) {
                    const QByteArray part = text.mid(at, piece);
                    deflater.append(view(part), hints ? anyPhrases(part.size()) : Phrases());
                }
                deflater.finish();
                QCOMPARE(inflated(deflater.packed(), text.size()), text);
                if (piece > text.size() && !hints && !text.isEmpty())
                    QVERIFY2(double(deflater.packed().size()) <= most * text.size() + 1,
                             qPrintable(QString::number(deflater.packed().size())));
                deflater.clear();
            }
        }
    }

private:
    using Phrases = std::vector<workbook::Phrase>;

    /** They are hints: the stream is right whatever they say. */
    Phrases anyPhrases(int textSize)
    {
        Phrases phrases;
        const auto size = std::size_t(textSize);
        for (std::size_t at = random() % 50; at < size; at += random() % 50) {
            const std::size_t end = std::min(size, at + random() % 400);
            phrases.push_back({at, end});
            at = end;
        }
        return phrases;
    }

    std::mt19937 random{1};
};

QTEST_APPLESS_MAIN(TestDeflate)
#include "tst_workbook_deflate.moc"
