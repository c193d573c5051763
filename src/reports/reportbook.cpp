#include "reports/reportbook.h"

#include "workbook/libxlhelper.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

#include <sys/statvfs.h>

namespace
{

constexpr int fontPoints = 10;

/// Returns a text with the free space if `error` means that it is used up, otherwise an empty text.
QString roomText(const QString &folder, int error)
{
    struct statvfs room = {};
    if (error != ENOSPC || ::statvfs(folder.toUtf8().constData(), &room) != 0)
        return {};
    return QStringLiteral(", %1 MiB free").arg(room.f_bavail * room.f_frsize / 1048576);
}

void logUnsaved(const QString &path, int error, const char *report)
{
    const QString reason =
        error == 0
            ? QStringLiteral("the workbook exceeds the limits of its format, or memory ran out")
            : qt_error_string(error);
    qWarning("%s - '%s': %s%s", report, qUtf8Printable(path), qUtf8Printable(reason),
             qUtf8Printable(roomText(QFileInfo(path).path(), error)));
}

} // namespace

void setUpReportBook(libxl::IBookT<wchar_t> &book, const char *report)
{
    book.setKey(LibXlHelper::licenceName(), LibXlHelper::licenceKey());
    if (!book.setLocale("UTF-8"))
        qWarning("%s::makeReport() - setLocale of book Fail!", report);
    book.setDefaultFont(L"MS Shell Dlg 2", fontPoints);
    book.setRgbMode(true);
}

QString reportPath(const QString &fileName)
{
    // Qt returns an empty text if the directory does not exist. The path would then be in the root
    // directory.
    const QString existing = QDir::tempPath();
    const QString folder =
        existing.isEmpty() ? qEnvironmentVariable("TMPDIR", QStringLiteral("/tmp")) : existing;
    return folder + QLatin1Char('/') + fileName;
}

bool saveReportBook(ReportBook book, const QString &path, const char *report)
{
    errno = 0; // stays 0 unless save() fails with a system error
    const bool saved = book->save(path.toStdWString().c_str());
    const int error = errno;
    book.reset();
    if (!saved) {
        qCritical("%s - XLS not saved!", report);
        logUnsaved(path, error, report);
    }
    return saved;
}
