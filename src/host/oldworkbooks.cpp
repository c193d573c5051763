#include "host/oldworkbooks.h"

#include <QDateTime>
#include <QDir>
#include <QRegularExpression>

#include <unistd.h>

namespace
{

/// Returns the first day of the month in a workbook's file name, such as
/// "DennyReport_firm_112023.xlsx". Returns an invalid date if the file is not a report's workbook.
QDate monthIn(const QString &fileName)
{
    static const QRegularExpression form(
        QStringLiteral(R"(^(?:DennyReport|MesReportDochadzky)_.+_(\d{2})(\d{4})\.xlsx?$)"));
    const QRegularExpressionMatch match = form.match(fileName);
    return QDate(match.captured(2).toInt(), match.captured(1).toInt(), 1);
}

} // namespace

int removeOldWorkbooks(const QDir &folder, const QDate &today)
{
    const QDate thisMonth(today.year(), today.month(), 1);
    const QDateTime yesterday = QDateTime::currentDateTime().addDays(-1);
    int removed = 0;
    const QFileInfoList files = folder.entryInfoList(QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo &file : files) {
        const QDate month = monthIn(file.fileName());
        if (month.isValid() && month < thisMonth && file.lastModified() < yesterday &&
            file.ownerId() == ::geteuid() && QFile::remove(file.filePath()))
            ++removed;
    }
    return removed;
}
