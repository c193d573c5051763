#include "common/zas.h"

#include <QTest>

#include <limits>

class TestZas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void durationText_data();
    void durationText();
};

void TestZas::durationText_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<uint>("format");
    QTest::addColumn<bool>("limit24");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, qint64 seconds, uint format, bool limit24,
                        const char *text) {
        QTest::newRow(name) << seconds << format << limit24 << QString::fromLatin1(text);
    };
    row("zero", 0, 2, false, "00:00");
    row("hours alone", 7 * 3600, 1, false, "07");
    row("hours alone lose the sign", -7 * 3600, 1, false, "07");
    row("negative below a minute keeps its sign", -59, 2, false, "-00:00");
    row("negative", -3600, 2, false, "-01:00");
    row("seconds", 45, 3, false, "00:00:45");
    row("unknown formats show seconds", 25509, 9, false, "07:05:09");
    row("more than 99 hours", 360000, 2, false, "100:00");
    row("wrapped above a day", 90061, 2, true, "01:01");
    row("a whole day is not wrapped", 86400, 2, true, "24:00");
    row("one second more is", 86401, 3, true, "00:00:01");
    row("negative is never wrapped", -90061, 2, true, "-25:01");
    row("smallest", std::numeric_limits<qint64>::min(), 3, false, "-2562047788015215:30:08");
}

void TestZas::durationText()
{
    QFETCH(qint64, seconds);
    QFETCH(uint, format);
    QFETCH(bool, limit24);
    QTEST(ZAS::tsToTimeString(seconds, format, limit24), "text");
}

QTEST_APPLESS_MAIN(TestZas)
#include "tst_zas.moc"
