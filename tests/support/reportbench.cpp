#include "support/reportbench.h"

#include <QtMath>

ReportBench::ReportBench()
    : schema(TestDatabase::Tables::Schema)
    , database(TestServer::addConnection("report", schema.name()))
{
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    if (!database.open())
        qFatal("the bench cannot open its schema");
}

ReportBench::~ReportBench()
{
    qunsetenv("TMPDIR");
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase("report");
}

void ReportBench::set(const QString &key, const QString &value) const
{
    schema.exec(QString("REPLACE INTO vars (name, value) VALUES ('%1', '%2')").arg(key, value));
}

QVariant ReportBench::lastGenerated(const QString &report) const
{
    return schema.value(
        QString("SELECT value FROM vars WHERE name = 'autoReport.%1.lastGenerated'").arg(report));
}

QString ReportBench::file(const QString &report, const QDate &month, const QString &suffix) const
{
    const QStringList name{report, schema.name(), month.toString("MMyyyy")};
    return temporary.filePath(name.join('_') + '.' + suffix);
}

QJsonArray sheetRow(const QJsonObject &sheet, int row)
{
    const QString last = sheet["dimensions"].toString().section(':', -1).remove(QRegExp("[0-9]"));
    QJsonArray values;
    QString cell;
    while (cell != last + QString::number(row) && values.size() < 52) {
        cell = cellName(row - 1, values.size());
        values.append(cellValue(sheet, cell));
    }
    return values;
}

int rowCount(const QJsonObject &sheet)
{
    return sheet["dimensions"].toString().section(':', -1).remove(QRegExp("[A-Z]")).toInt();
}

QString shownWidths(const QJsonObject &sheet)
{
    // Stored widths hold five pixels of padding beside the digits of seven pixels each.
    const QJsonObject widths = sheet["columnWidths"].toObject();
    QStringList shown;
    for (const QString &column : widths.keys())
        shown += column + QString::number(qFloor(widths[column].toDouble()));
    return shown.join(' ');
}

void checkPage(const QJsonObject &sheet)
{
    const char *page = R"({"freeze": "A2", "printTitles": "$1:$1", "landscape": true, "margins":
        {"left": 0.1968, "right": 0.1968, "top": 0.1968, "bottom": 0.75, "header": 0.3,
        "footer": 0.5}, "footer": "Strana &P/&N", "fitToWidth": 1, "fitToHeight": 0,
        "fitToPage": true, "paper": 9, "printGridLines": true})";
    const QJsonObject expected = QJsonDocument::fromJson(page).object();
    for (const QString &key : expected.keys())
        QCOMPARE(sheet[key], expected[key]);
}

QJsonArray rowOf(int columns, const QString &cells, const QString &more)
{
    QJsonArray row;
    for (int column = 0; column < columns; ++column)
        row += QJsonValue();
    for (const QString &text : {cells, more}) {
        const QJsonObject values = QJsonDocument::fromJson(text.toUtf8()).object();
        for (const QString &column : values.keys())
            row[column[0].unicode() - 'A'] = values[column];
    }
    return row;
}
