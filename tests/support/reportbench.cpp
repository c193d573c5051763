#include "support/reportbench.h"

#include "support/connectionguard.h"

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
    QString column;
    // Two letters are enough for a report: A to Z, then AA to AZ.
    for (int index = 0; column != last && index < 52; ++index) {
        column = (index < 26 ? QString() : QString(QLatin1Char('A'))) +
                 QLatin1Char(static_cast<char>('A' + index % 26));
        values.append(cellValue(sheet, column + QString::number(row)));
    }
    return values;
}

int rowCount(const QJsonObject &sheet)
{
    return lastCell(sheet).second;
}
