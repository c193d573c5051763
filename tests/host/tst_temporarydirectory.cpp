#include "options/temporarydirectory.h"

#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

#include <dlfcn.h>
#include <sys/statvfs.h>

using State = TemporaryDirectory::State;

namespace
{

std::atomic<bool> diskStalled{false};
std::atomic<int> waitingForDisk{0};

} // namespace

// The whole process calls this instead of the system's.
extern "C" Q_DECL_EXPORT int statvfs(const char *path, struct statvfs *room) noexcept
{
    static const auto measure = reinterpret_cast<decltype(&statvfs)>(dlsym(RTLD_NEXT, "statvfs"));
    ++waitingForDisk;
    while (diskStalled)
        QTest::qSleep(10);
    --waitingForDisk;
    return measure(path, room);
}

class TestTemporaryDirectory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// One thread waits, whoever asks how often, and a late answer does not count.
    void stalledDisk()
    {
        constexpr auto patience = std::chrono::milliseconds(50);
        constexpr auto manyTimes = std::chrono::seconds(10);
        const QTemporaryDir directory;
        qputenv("TMPDIR", directory.path().toLocal8Bit());
        TemporaryDirectoryProbe probe;
        QCOMPARE(probe.check(manyTimes).state, State::Usable);
        diskStalled = true;
        const auto getsOn = qScopeGuard([] { diskStalled = false; });
        QCOMPARE(probe.check(patience).state, State::Silent);
        QCOMPARE(probe.check(manyTimes).path, directory.path()); // at once
        QCOMPARE(waitingForDisk, 1);
        qputenv("TMPDIR", "/proc");
        diskStalled = false;
        QTRY_COMPARE(probe.check(manyTimes).state, State::NotWritable);
        QVERIFY(QDir(directory.path()).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestTemporaryDirectory)
#include "tst_temporarydirectory.moc"
