#pragma once

#include "support/logcapture.h"
#include "support/testdata.h"
#include "support/testserver.h"
#include "support/workbookreader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <memory>

/**
 * What one test of a report needs: a schema, a connection to it, a temporary directory that the
 * workbook goes to, and the log. Reports must be gone before it is.
 */
class ReportBench
{
public:
    ReportBench();
    ~ReportBench();
    Q_DISABLE_COPY(ReportBench)

    void set(const QString &key, const QString &value) const;
    int mails() const { return schema.mails(); }
    /// Returns an invalid value if it was never stored.
    QVariant lastGenerated(const QString &report) const;
    /// Returns the path of the report of that month.
    QString file(const QString &report, const QDate &month, const QString &suffix = "xlsx") const;

    LogCapture log;
    TestDatabase schema;
    QTemporaryDir temporary;
    QSqlDatabase database;
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
QJsonArray sheetRow(const QJsonObject &sheet, int row);
int rowCount(const QJsonObject &sheet);
/// A row of `columns` cells; both texts are objects in JSON that give values by column.
QJsonArray rowOf(int columns, const QString &cells, const QString &more);
/// Returns the widths that are set, as users see them: "A10 B20".
QString shownWidths(const QJsonObject &sheet);
/// Checks the page set-up that both reports share.
void checkPage(const QJsonObject &sheet);
