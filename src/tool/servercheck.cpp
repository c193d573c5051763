#include "tool/servercheck.h"

#include "common/freshquery.h"

#include <QDateTime>
#include <QSqlError>
#include <QVariant>

#include <algorithm>

namespace
{

constexpr qint64 clockToleranceSeconds = 5; // NTP and a slow answer cause smaller differences
constexpr int connectionsToSpare = 20;      // for the product's users and an operator
constexpr int connectionsOfScan = 400;      // opened by a scan within a slice of 0.2 s

/// Returns an invalid value if the statement fails.
QVariant valueOf(const QSqlDatabase &database, const char *statement)
{
    QSqlQuery query = freshQuery(database);
    return query.exec(QLatin1String(statement)) && query.next() ? query.value(0) : QVariant();
}

void checkWords(const QSqlDatabase &master, Findings &findings)
{
    // Tries the word instead of comparing versions, which MariaDB and MySQL number differently.
    const QVariant version = valueOf(master, "SELECT VERSION()");
    if (!version.isValid() || valueOf(master, "SELECT 1 AS groups").isValid())
        return;
    findings.add(
        Gravity::Obstacle, "words",
        QStringLiteral("%1 reserves the word 'groups', the name of a table in every schema")
            .arg(version.toString()),
        QStringLiteral("run the schemas on MariaDB or on MySQL 5.7; MySQL 8 is not supported"));
}

void checkClock(const QSqlDatabase &master, Findings &findings)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QVariant serverNow = valueOf(master, "SELECT UNIX_TIMESTAMP()");
    const qint64 ahead = serverNow.toLongLong() - now.toSecsSinceEpoch();
    if (serverNow.isValid() && qAbs(ahead) > clockToleranceSeconds)
        findings.add(Gravity::Harm, "clock",
                     QStringLiteral("its clock is %1 s %2 this machine's")
                         .arg(QString::number(qAbs(ahead)),
                              ahead > 0 ? QStringLiteral("ahead of") : QStringLiteral("behind")),
                     QStringLiteral("keep both clocks right, for example with NTP"));
    const QVariant offset = valueOf(master, "SELECT TIMESTAMPDIFF(SECOND, UTC_TIMESTAMP(), NOW())");
    // Only a notice, because the tables hold Unix seconds.
    if (offset.isValid() && offset.toInt() != now.offsetFromUtc())
        findings.add(
            Gravity::Notice, "zone",
            QStringLiteral("its UTC offset is %1 min, this machine's is %2 min")
                .arg(QString::number(offset.toInt() / 60),
                     QString::number(now.offsetFromUtc() / 60)),
            QStringLiteral("the reports' days are those of the machine that runs "
                           "autoreport serve: make sure that its time zone is the customers'"));
}

} // namespace

QVector<Finding> checkServer(const QSqlDatabase &master)
{
    Findings findings(QStringLiteral("server"));
    checkWords(master, findings);
    checkClock(master, findings);
    return findings.list;
}

QString cipherOf(const QSqlDatabase &master)
{
    QSqlQuery query = freshQuery(master);
    const bool ran = query.exec(QStringLiteral("SHOW SESSION STATUS LIKE 'Ssl_cipher'"));
    return ran && query.next() ? query.value(1).toString() : QString();
}

/// Checks max_connections. A host without enough connections would serve only some of the schemas.
QVector<Finding> checkConnections(const QSqlDatabase &master, int schemas, int enabled)
{
    Findings findings(QStringLiteral("server"));
    const QVariant limit = valueOf(master, "SELECT @@max_connections");
    // Two connections to the information database, of which one is short-lived; those that a slice
    // of the scan opens; and one for each worker.
    const int needed = 2 + std::min(schemas, connectionsOfScan) + enabled;
    if (limit.isValid() && needed + connectionsToSpare > limit.toInt())
        findings.add(Gravity::Harm, "connections",
                     QStringLiteral("max_connections is %1; a host needs up to %2 for %3 "
                                    "schemas, %4 of them with a report enabled, and some to spare")
                         .arg(limit.toString(), QString::number(needed), QString::number(schemas),
                              QString::number(enabled)),
                     QStringLiteral("set max_connections to %1 or more, and raise "
                                    "open_files_limit accordingly")
                         .arg(needed + connectionsToSpare));
    return findings.list;
}
