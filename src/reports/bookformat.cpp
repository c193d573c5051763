#include "reports/bookformat.h"

const BookFormat xlsxFormat{
    QLatin1String(".xlsx"),
    QLatin1String("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"),
    xlCreateXMLBookW};
const BookFormat xlsFormat{QLatin1String(".xls"), QLatin1String("application/vnd.ms-excel"),
                           xlCreateBookW};

const BookFormat &bookFormatOf(const QString &path)
{
    return path.endsWith(xlsFormat.extension, Qt::CaseInsensitive) ? xlsFormat : xlsxFormat;
}
