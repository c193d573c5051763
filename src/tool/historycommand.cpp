#include "tool/commands.h"
#include "tool/historypage.h"
#include "tool/historytext.h"
#include "tool/machine.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/progress.h"
#include "tool/targetfile.h"
#include "tool/tool.h"

#include <QJsonArray>
#include <QSaveFile>

#include <algorithm>
#include <cerrno>

namespace
{

bool isWell(const QVector<ReportHistory> &reports)
{
    return std::all_of(reports.cbegin(), reports.cend(),
                       [](const ReportHistory &one) { return one.status.reason.isEmpty(); });
}

/// Returns nothing if the server stops answering, because an incomplete page would look complete.
std::optional<QVector<ReportHistory>> readAll(const Schemas &schemas,
                                              const QVector<SchemaRow> &rows,
                                              const Machine &machine, const HistoryWindow &window)
{
    QVector<ReportHistory> found;
    const SchemaJudge judge(machine, window.now, SchemaJudge::Scope::Problems);
    Progress progress(QStringLiteral("schemas"), rows.size());
    for (const SchemaRow &row : rows) {
        const auto reports = readHistory(row, judge, window);
        if (!isWell(reports) && !schemas.isAnswering())
            return std::nullopt;
        found += reports;
        progress.step();
    }
    return found;
}

/// Replaces the file only after writing the new page completely.
bool writePage(const QString &path, const QByteArray &page)
{
    QSaveFile file(path);
    errno = 0; // not every error of QSaveFile sets errno
    // Calls flush() before commit(), because commit() ignores errors in writing buffered data.
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(page) == page.size() &&
                           file.flush() && file.commit();
    const int error = errno;
    if (isWritten) {
        Output::print(path);
        return true;
    }
    Output::error(QStringLiteral("cannot write '%1': %2")
                      .arg(path, error == 0 ? file.errorString() : qt_error_string(error)));
    return false;
}

void printJson(const QVector<ReportHistory> &reports, const HistoryWindow &window, int status)
{
    QJsonArray array;
    for (const ReportHistory &report : reports)
        array.append(historyJson(report));
    Output::print(QJsonObject{
        {QStringLiteral("moment"), window.now.toUTC().toString(Qt::ISODate)},
        {QStringLiteral("status"), status},
        {QStringLiteral("reports"), array},
    });
}

void printText(const QVector<ReportHistory> &reports, bool isOfOneSchema)
{
    Output::print(historyTable(reports));
    if (!isOfOneSchema)
        return;
    for (const ReportHistory &report : reports) {
        const QStringList days = historyDays(report);
        Output::print(days.isEmpty() ? days : QStringList(QString()) + days);
    }
}

int showHistory(const Invocation &invocation, const Schemas &schemas,
                const QVector<SchemaRow> &rows)
{
    const HistoryWindow window(QDateTime::currentDateTime());
    const auto found = readAll(schemas, rows, Machine::ask(invocation.connection), window);
    if (!found) {
        Output::error(QStringLiteral("the server no longer answers"));
        return Tool::CouldNotAsk;
    }
    const int status = isWell(*found) ? Tool::Well : Tool::Look;
    if (invocation.has("json"))
        printJson(*found, window, status);
    else if (!invocation.has("html"))
        printText(*found, !invocation.token.isEmpty());
    else if (!writePage(invocation.value("html"), historyPage(*found, window)))
        return Tool::Look;
    return status;
}

} // namespace

void describeHistory(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON, for a monitor.")});
    parser.addOption({QStringLiteral("html"),
                      QStringLiteral("Write an HTML page to this file; the page needs no other "
                                     "file."),
                      QStringLiteral("file")});
}

int runHistory(const Invocation &invocation)
{
    if (invocation.has("json") && invocation.has("html"))
        return invocation.wrong(QStringLiteral("--json and --html exclude each other"));
    if (invocation.has("html") && !isUsableTarget(invocation.value("html")))
        return Tool::Look;
    return onSchemas(invocation, [&](const Schemas &schemas) {
        const auto rows = schemas.rows(invocation.token);
        if (!rows.isOk()) {
            Output::error(rows.error());
            return static_cast<int>(Tool::CouldNotAsk);
        }
        const QVector<SchemaRow> active = activeOf(rows.value());
        return active.isEmpty() && !invocation.token.isEmpty()
                   ? noSuchSchema(schemas, invocation.token)
                   : showHistory(invocation, schemas, active);
    });
}
