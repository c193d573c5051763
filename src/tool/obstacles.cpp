#include "tool/obstacles.h"

#include "common/freshquery.h"
#include "common/zas.h"
#include "db/varstable.h"
#include "reports/attenreport.h"
#include "reports/bookformat.h"
#include "tool/reportjob.h"
#include "tool/requirements.h"
#include "tool/servercheck.h"

#include <QDir>
#include <QTemporaryFile>

#include <algorithm>

#include <fcntl.h>

namespace
{

constexpr qint64 clockToleranceSeconds = 300;
// A workbook of both formats has more: what is refused for so few bytes is refused for it.
constexpr qint64 leastBytesPerRow = 20;
constexpr qint64 leastBytes = 4096;

void judgeSettings(const StoredSettings &stored, const QDateTime &now, Findings &findings)
{
    const ReportSettings &settings = stored.settings;
    const QString set = QStringLiteral("autoreport set ... ");
    if (!settings.enabled)
        findings.problem(QStringLiteral("it is disabled"), set + QStringLiteral("--enable"));
    else if (!stored.isFoundByScan())
        findings.problem(QStringLiteral("enabled is '%1', but the scan of a host asks for exactly "
                                        "1 and finds the schema only by its other report")
                             .arg(stored.text("enabled")),
                         set + QStringLiteral("--enable"));
    if (Recipients(settings.recipients).wellFormed.isEmpty())
        findings.problem(
            QStringLiteral("nobody would get it: emails is '%1'").arg(stored.text("emails")),
            set + QStringLiteral("--emails"));
    if (settings.lastGenerated > now.toSecsSinceEpoch() + clockToleranceSeconds)
        findings.problem(QStringLiteral("lastGenerated lies in the future; a clock was wrong"),
                         QStringLiteral("set the clock, then lastGenerated in the table vars"));
}

/// Without the people or the queue there is no report. Other tables cost it values: they are left
/// to the check.
bool isDecisive(const QString &error)
{
    const QString table = error.section(QLatin1Char(':'), 0, 0).section(QLatin1Char(' '), 1, 1);
    return table.startsWith(QLatin1String("people")) || table == QLatin1String("emails");
}

void judgeTables(const QSqlDatabase &database, const ReportKind &kind, Findings &findings)
{
    QStringList errors =
        Requirements::unreadable(database, kind) + Requirements::unwritable(database);
    errors.removeDuplicates();
    for (const QString &error : qAsConst(errors)) {
        if (isDecisive(error))
            findings.problem(error, QStringLiteral("restore the tables, or grant SELECT on people "
                                                   "and what it joins, INSERT on emails"));
    }
    const auto sender = VarsTable(database).value(QStringLiteral("globalEmail"));
    const QVariant address = sender.isOk() ? sender.value().value_or(QVariant()) : QVariant();
    if (address.isValid() && !ZAS::validEmail(address.toString()))
        findings.problem(QStringLiteral("the sender globalEmail is not a mail address: '%1'")
                             .arg(address.toString()),
                         QStringLiteral("correct globalEmail in the table vars, or delete it"));
}

void judgeRows(int rows, const BookFormat &format, Findings &findings)
{
    if (rows == 0)
        findings.problem(QStringLiteral("no people are employed this month"),
                         QStringLiteral("see status, begin and end in the table people"));
    else if (rows >= format.rows)
        findings.problem(
            QStringLiteral("%1 rows are more than the %2 of %3")
                .arg(QString::number(rows), QString::number(format.rows - 1), format.extension),
            QStringLiteral("autoreport set ... --format xlsx"));
}

/// With the rights of this account, and the temporary directory of this process.
void judgeDirectory(qint64 bytes, Findings &findings)
{
    QTemporaryFile file(QDir::tempPath() + QStringLiteral("/autoreport-why-XXXXXX"));
    if (QDir::tempPath().isEmpty() || !file.open()) {
        const QVector<Finding> found = checkTemporaryDirectory();
        if (!found.isEmpty())
            findings.problem(found.first().text, found.first().remedy);
        return;
    }
    const int error = ::posix_fallocate(file.handle(), 0, bytes);
    if (error != 0)
        findings.problem(QStringLiteral("the temporary directory '%1' has no room for %2 bytes: %3")
                             .arg(QDir::tempPath(), QString::number(bytes), qt_error_string(error)),
                         QStringLiteral("make room, or point TMPDIR to another directory"));
}

/// The attachment is in Base64.
void judgeMail(const QSqlDatabase &database, qint64 bytes, Findings &findings)
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral(
            "SELECT @@max_allowed_packet, (SELECT character_maximum_length FROM "
            "information_schema.columns WHERE table_schema = DATABASE() AND table_name = 'emails' "
            "AND column_name = 'data')")) ||
        !query.next())
        return;
    const qint64 mail = bytes / 3 * 4;
    if (mail > query.value(0).toLongLong())
        findings.problem(QStringLiteral("max_allowed_packet is %1, a mail has %2 bytes or more")
                             .arg(query.value(0).toString(), QString::number(mail)),
                         QStringLiteral("set max_allowed_packet to 64M on the server"));
    if (!query.isNull(1) && mail > query.value(1).toLongLong())
        findings.problem(QStringLiteral("emails.data holds %1 bytes, a mail has %2 or more")
                             .arg(query.value(1).toString(), QString::number(mail)),
                         QStringLiteral("ALTER TABLE emails MODIFY data LONGBLOB"));
}

} // namespace

QVector<Finding> findObstacles(const QSqlDatabase &database, const QString &token,
                               const StoredSettings &stored, const ReportKind &kind,
                               const QDateTime &now)
{
    Findings findings(token);
    judgeSettings(stored, now, findings);
    judgeTables(database, kind, findings);
    const auto report = createReport(kind, database);
    const int rows = report->countRows(runFor({}, now, CountsAsMade::Never, database));
    judgeRows(rows, bookFormatOf(report->fileName(now.date())), findings);
    const qint64 bytes = leastBytes + std::max(rows, 0) * leastBytesPerRow;
    judgeDirectory(bytes, findings);
    judgeMail(database, bytes, findings);
    return findings.list;
}
