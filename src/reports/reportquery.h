#pragma once

#include <QDate>
#include <QString>

class QSqlQuery;

/**
 * Executes `statement`. On an error, logs `failure`, the whole beginning of the line, followed by
 * the driver's text: the first as a warning, for the queries that a report survives, the second as
 * critical, for the one that ends it.
 */
bool execOrWarn(QSqlQuery &query, const QString &statement, const char *failure);
bool execOrFail(QSqlQuery &query, const QString &statement, const char *failure);

/// Returns the day's first moment as decimal Unix seconds, as statements take it.
QString dayStartText(const QDate &date);
