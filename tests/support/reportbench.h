#pragma once

#include "support/logcapture.h"
#include "support/testdata.h"
#include "support/testserver.h"
#include "support/workbookreader.h"

/// What one test of a report needs: a schema, a connection to it, a temporary directory that the
/// workbook goes to, and the log. Reports must be gone before it is.
class ReportBench
{
public:
    ReportBench()
    {
        qputenv("TMPDIR", temporary.path().toLocal8Bit());
        if (!database.open())
            qFatal("test bench: cannot open the schema");
    }
    ~ReportBench()
    {
        qunsetenv("TMPDIR");
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase("report");
    }
    Q_DISABLE_COPY(ReportBench)

    void set(const QString &key, const QString &value) const
    {
        schema.exec(QString("REPLACE INTO vars (name, value) VALUES ('%1', '%2')").arg(key, value));
    }
    int mails() const { return schema.mails(); }
    /// Returns an invalid value if it was never stored.
    QVariant lastGenerated(const QString &report) const
    {
        const QString sql("SELECT value FROM vars WHERE name = 'autoReport.%1.lastGenerated'");
        return schema.value(sql.arg(report));
    }
    /// Returns the path of the report of that month.
    QString file(const QString &report, const QDate &month, const QString &suffix = "xlsx") const
    {
        const QStringList name{report, schema.name(), month.toString("MMyyyy")};
        return temporary.filePath(name.join('_') + '.' + suffix);
    }

    LogCapture log;
    const TestDatabase schema{TestDatabase::Tables::Schema};
    const QTemporaryDir temporary;
    QSqlDatabase database = TestServer::addConnection("report", schema.name());
};

/// Base of test classes that gives each test function its own bench.
class ReportTest : public QObject
{
    Q_OBJECT

protected:
    /// Runs after the bench is set up.
    virtual void prepare() {}

    std::unique_ptr<ReportBench> bench;

private Q_SLOTS:
    void init()
    {
        bench = std::make_unique<ReportBench>();
        prepare();
    }
    void cleanup() { bench.reset(); }
};

// A sheet as readSheet() returns it.

/// Returns all cells of a row, counted from 1, up to the sheet's last column.
inline QJsonArray sheetRow(const QJsonObject &sheet, int row)
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

inline int rowCount(const QJsonObject &sheet)
{
    return sheet["dimensions"].toString().section(':', -1).remove(QRegExp("[A-Z]")).toInt();
}

/// A row of `columns` cells; both texts are objects in JSON that give values by column.
inline QJsonArray rowOf(int columns, const QString &cells, const QString &more = "{}")
{
    QJsonArray row;
    while (row.size() < columns)
        row += QJsonValue();
    for (const QString &text : {cells, more}) {
        const QJsonObject values = QJsonDocument::fromJson(text.toUtf8()).object();
        for (const QString &column : values.keys())
            row[column[0].unicode() - 'A'] = values[column];
    }
    return row;
}

/// Returns the widths that are set, as users see them: "A10 B20".
inline QString widths(const QJsonObject &sheet)
{
    // Stored widths hold five pixels of padding beside the digits of seven pixels each.
    const QJsonObject widths = sheet["columnWidths"].toObject();
    QStringList shown;
    for (const QString &column : widths.keys())
        shown += column + QString::number(qFloor(widths[column].toDouble()));
    return shown.join(' ');
}

/// Checks the page set-up that both reports share.
inline void checkPage(const QJsonObject &sheet)
{
    const char *page = R"({"freeze": "A2", "printTitles": "$1:$1", "landscape": true, "margins":
        {"left": 0.1968, "right": 0.1968, "top": 0.1968, "bottom": 0.75, "header": 0.3,
        "footer": 0.5}, "footer": "Strana &P/&N", "fitToWidth": 1, "fitToHeight": 0,
        "fitToPage": true, "paper": 9, "printGridLines": true})";
    const QJsonObject expected = QJsonDocument::fromJson(page).object();
    for (const QString &key : expected.keys())
        QCOMPARE(sheet[key], expected[key]);
}
