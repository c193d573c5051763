#include "tool/requirements.h"

#include "common/freshquery.h"
#include "db/mailrepository.h"
#include "db/varstable.h"
#include "reports/attenreport.h"
#include "tool/reportjob.h"

#include <QRegularExpression>
#include <QSet>

namespace
{

/// Returns "table atten", or "tables people, groups".
QString tablesOf(const QString &statement)
{
    static const QRegularExpression pattern(QStringLiteral("\\b(?:FROM|JOIN|INTO)\\s+(\\w+)"));
    QStringList names;
    for (auto match = pattern.globalMatch(statement); match.hasNext();)
        names.append(match.next().captured(1));
    return (names.size() == 1 ? QStringLiteral("table ") : QStringLiteral("tables ")) +
           names.join(QStringLiteral(", "));
}

QStringList errorsOf(const QSqlDatabase &database, const QStringList &statements)
{
    QStringList errors;
    QSet<QString> known; // a missing table makes several statements fail
    for (const QString &statement : statements) {
        QSqlQuery query = freshQuery(database);
        if (query.prepare(statement))
            continue;
        const QString text = query.lastError().databaseText().simplified();
        if (!known.contains(text))
            errors.append(QStringLiteral("%1: %2").arg(tablesOf(statement), text));
        known.insert(text);
    }
    return errors;
}

} // namespace

QStringList Requirements::unreadable(const QSqlDatabase &database, const ReportKind &kind)
{
    const QStringList ownStatements = createReport(kind, database)->statements();
    return errorsOf(database, ownStatements + QStringList{VarsTable::prefixStatement(QString()),
                                                          MailRepository::columnsStatement()});
}

QStringList Requirements::unwritable(const QSqlDatabase &database)
{
    return errorsOf(database, {VarsTable::upsertStatement(), MailRepository::insertStatement()});
}
