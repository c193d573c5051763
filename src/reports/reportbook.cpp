#include "reports/reportbook.h"

#include "workbook/libxlhelper.h"

#include <QDir>

namespace
{

constexpr int fontPoints = 10;

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
    // Qt's answer for a directory that does not exist is empty: that would be the root directory.
    const QString existing = QDir::tempPath();
    const QString folder = existing.isEmpty() ? qEnvironmentVariable("TMPDIR") : existing;
    return folder + QLatin1Char('/') + fileName;
}

bool saveReportBook(ReportBook book, const QString &path, const char *report)
{
    const bool saved = book->save(path.toStdWString().c_str());
    book.reset();
    if (!saved)
        qCritical("%s - XLS not saved!", report);
    return saved;
}
