#pragma once

#include <QDate>
#include <QString>

class QSqlQuery;

/**
 * Runs `statement`. A failure is logged as `failure`, the whole beginning of the log line, followed
 * by the driver's text: by the first as a warning, for the queries that a report survives, by the
 * second as critical, for the one that ends it.
 */
bool runOrWarn(QSqlQuery &query, const QString &statement, const char *failure);
bool runOrFail(QSqlQuery &query, const QString &statement, const char *failure);

QDate firstOfMonth(const QDate &date);

/// The day's first second as decimal Unix seconds; some days begin later than at midnight.
QString dayStartText(const QDate &date);
