#include "options/temporarydirectory.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QSemaphore>

#include <cerrno>
#include <mutex>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace
{

/// Returns the path without accessing the disk.
QString pathAsSet()
{
    const QString path = QFile::decodeName(qgetenv("TMPDIR"));
    return path.isEmpty() ? QStringLiteral("/tmp") : path;
}

/// Returns why no file can be created in the directory, or an empty text. Tries to create a file,
/// because permissions do not show, for example, that the file system is read-only.
QString writeError(const QByteArray &path)
{
    QByteArray file = path + "/autoreport-check-XXXXXX";
    const int descriptor = ::mkostemp(file.data(), O_CLOEXEC);
    if (descriptor == -1)
        return qt_error_string(errno);
    ::close(descriptor);
    ::unlink(file.constData());
    return QString();
}

TemporaryDirectory checkDirectory()
{
    using State = TemporaryDirectory::State;
    const QString path = QDir::tempPath(); // where the reports are written
    if (path.isEmpty())
        return {pathAsSet(), State::Missing, {}, 0};
    const QByteArray name = QFile::encodeName(path);
    const QString error = writeError(name);
    // Do not use QStorageInfo: it needs the table of mounts, which may be missing in a container.
    struct statvfs room = {};
    const bool isKnown = ::statvfs(name.constData(), &room) == 0;
    return {path, error.isEmpty() ? State::Usable : State::NotWritable, error,
            isKnown ? qint64(room.f_bavail) * qint64(room.f_frsize) : 0};
}

} // namespace

/// Shared by a probe and the thread that it started, because either may end first.
struct TemporaryDirectoryProbe::Check {
    QSemaphore done; // released when the thread has set `directory`
    std::mutex mutex;
    TemporaryDirectory directory;
};

TemporaryDirectoryProbe::TemporaryDirectoryProbe() = default;

TemporaryDirectoryProbe::~TemporaryDirectoryProbe() = default;

TemporaryDirectory TemporaryDirectoryProbe::check(std::chrono::milliseconds patience)
{
    const TemporaryDirectory silent{pathAsSet(), TemporaryDirectory::State::Silent, {}, 0};
    if (pending && pending->done.available() == 0)
        return silent;
    // Start a new check, because the result of an earlier one would be out of date.
    const auto check = std::make_shared<Check>();
    try {
        std::thread([check] {
            TemporaryDirectory directory = checkDirectory();
            const std::lock_guard guard(check->mutex);
            check->directory = std::move(directory);
            check->done.release();
        }).detach();
    } catch (const std::system_error &error) {
        return {pathAsSet(), TemporaryDirectory::State::Unchecked,
                QStringLiteral("no thread could be started: ") +
                    QString::fromLocal8Bit(error.what()),
                0};
    }
    pending = check;
    if (!check->done.tryAcquire(1, int(patience.count())))
        return silent;
    pending.reset();
    const std::lock_guard guard(check->mutex);
    return check->directory;
}
