#include "support/workbookreader.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

QJsonObject readWorkbook(const QString &path)
{
    QProcess reader;
    reader.start(QStringLiteral(AUTOREPORT_READ_WORKBOOK), {path});
    if (reader.waitForFinished(60000) && reader.exitStatus() == QProcess::NormalExit &&
        reader.exitCode() == 0)
        return QJsonDocument::fromJson(reader.readAllStandardOutput()).object();
    qCritical().noquote() << "cannot read" << path << ":" << reader.errorString()
                          << reader.readAllStandardError();
    return {};
}

QJsonObject readSheet(const QString &path, int index)
{
    return readWorkbook(path).value(QLatin1String("sheets")).toArray().at(index).toObject();
}
