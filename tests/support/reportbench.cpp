#include "support/reportbench.h"

#include "support/workbookreader.h"

#include <QJsonDocument>
#include <QTest>
#include <QtMath>

#include <ctime>

ReportBench::ReportBench()
    : schema(TestDatabase::Tables::Schema)
    , database(TestServer::addConnection(QStringLiteral("report"), schema.name()))
{
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    if (!database.open())
        qFatal("the bench cannot open its schema");
}

ReportBench::~ReportBench()
{
    qunsetenv("TMPDIR");
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("report"));
    checkConnections(log);
}

void ReportBench::setTimeZone()
{
    qputenv("TZ", "Europe/Bratislava");
    tzset();
}

void ReportBench::set(const QString &key, const QString &value) const
{
    schema.exec(
        QStringLiteral("REPLACE INTO vars (name, value) VALUES ('%1', '%2')").arg(key, value));
}

int ReportBench::mails() const
{
    return schema.value(QStringLiteral("SELECT COUNT(*) FROM emails")).toInt();
}

QVariant ReportBench::lastGenerated(const QString &report) const
{
    return schema.value(
        QStringLiteral("SELECT value FROM vars WHERE name = 'autoReport.%1.lastGenerated'")
            .arg(report));
}

namespace
{

/// The last cell of "A1:N5": "N", 5.
QPair<QString, int> lastCell(const QJsonObject &sheet)
{
    const QString reference =
        sheet.value(QLatin1String("dimensions")).toString().section(QLatin1Char(':'), -1);
    int letters = 0;
    while (letters < reference.size() && reference.at(letters).isLetter())
        ++letters;
    return {reference.left(letters), reference.mid(letters).toInt()};
}

} // namespace

QJsonValue cellValue(const QJsonObject &sheet, const QString &reference)
{
    const QJsonObject cells = sheet.value(QLatin1String("cells")).toObject();
    const QJsonValue value = cells.value(reference).toObject().value(QLatin1String("value"));
    return value.isUndefined() ? QJsonValue() : value;
}

QJsonArray sheetRow(const QJsonObject &sheet, int row)
{
    const QString last = lastCell(sheet).first;
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
    return lastCell(sheet).second;
}

QString lookOf(const QJsonObject &sheet, const QString &reference)
{
    const QJsonObject cell = sheet["cells"].toObject()[reference].toObject();
    const QJsonObject font = cell["font"].toObject();
    QString look = QString("%1 %2%3, %4 %5%6, %7")
                       .arg(font["name"].toString(), QString::number(font["size"].toDouble()),
                            font["bold"].toBool() ? " bold" : "", cell["horizontal"].toString(),
                            cell["vertical"].toString(), cell["wrap"].toBool() ? " wrap" : "",
                            cell["numberFormat"].toString());
    const QJsonObject borders = cell["borders"].toObject();
    for (const QJsonValue &border : borders) {
        if (border != borders["top"] || borders.size() != 4)
            return "borders that differ";
    }
    if (!borders.isEmpty())
        look += QString(", %1 %2").arg(borders["top"].toObject()["style"].toString(),
                                       borders["top"].toObject()["color"].toString());
    return look;
}

QString shownWidths(const QJsonObject &sheet)
{
    // Stored widths hold five pixels of padding beside the digits of seven pixels each.
    const QJsonObject widths = sheet["columnWidths"].toObject();
    QStringList shown;
    for (auto width = widths.begin(); width != widths.end(); ++width)
        shown += width.key() + QString::number(qFloor(width->toDouble()));
    return shown.join(' ');
}

void checkPage(const QJsonObject &sheet)
{
    const QJsonObject margins = sheet["margins"].toObject();
    for (const char *side : {"left", "right", "top"})
        QCOMPARE(margins[side].toDouble(), 0.1968);
    QCOMPARE(margins["footer"].toDouble(), 0.5);
    QCOMPARE(sheet["footer"].toString(), QString("Strana &P/&N"));
    QCOMPARE(sheet["freeze"].toString(), QString("A2"));
    QCOMPARE(sheet["printTitles"].toString(), QString("$1:$1"));
    QVERIFY(sheet["landscape"].toBool() && sheet["printGridLines"].toBool());
    QCOMPARE(sheet["fitToWidth"].toInt(), 1);
    QCOMPARE(sheet["fitToHeight"].toInt(), 0);
}

QJsonArray rowOf(int columns, const QString &cells, const QString &more)
{
    QJsonArray row;
    for (int column = 0; column < columns; ++column)
        row += QJsonValue();
    for (const QString &text : {cells, more}) {
        const QJsonObject values = QJsonDocument::fromJson(text.toUtf8()).object();
        for (auto value = values.begin(); value != values.end(); ++value)
            row[value.key().at(0).unicode() - 'A'] = value.value();
    }
    return row;
}
