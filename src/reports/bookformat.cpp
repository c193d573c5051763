#include "reports/bookformat.h"

const BookFormat xlsxFormat{
    QLatin1String(".xlsx"),
    QLatin1String("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"), 1048576,
    xlCreateXMLBookW};
const BookFormat xlsFormat{QLatin1String(".xls"), QLatin1String("application/vnd.ms-excel"), 65536,
                           xlCreateBookW};

const BookFormat &bookFormatOf(const QString &path)
{
    return path.endsWith(xlsFormat.extension, Qt::CaseInsensitive) ? xlsFormat : xlsxFormat;
}
