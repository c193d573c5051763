#include "reports/bookformat.h"

const BookFormat xlsxFormat{
    QLatin1String(".xlsx"),
    QLatin1String("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"), 1048576,
    xlCreateXMLBookW};
const BookFormat xlsFormat{QLatin1String(".xls"), QLatin1String("application/vnd.ms-excel"), 65536,
                           xlCreateBookW};

QStringList bookFormatNames()
{
    QStringList names;
    for (const BookFormat *format : {&xlsxFormat, &xlsFormat})
        names.append(QString(format->extension).mid(1));
    return names;
}

const BookFormat *bookFormatNamed(const QString &name)
{
    for (const BookFormat *format : {&xlsxFormat, &xlsFormat}) {
        if (format->extension.mid(1).compare(name, Qt::CaseInsensitive) == 0)
            return format;
    }
    return nullptr;
}

const BookFormat &bookFormatOf(const QString &path)
{
    return path.endsWith(xlsFormat.extension, Qt::CaseInsensitive) ? xlsFormat : xlsxFormat;
}
