#pragma once

#include <QDate>
#include <QString>

class QSqlQuery;

/**
 * Execute `statement`. On an error, return false and log `failure`, followed by the driver's text.
 * execOrWarn() logs a warning and is for queries whose failure a report survives. execOrFail() logs
 * a critical error and is for the query whose failure ends the report.
 */
bool execOrWarn(QSqlQuery &query, const QString &statement, const char *failure);
bool execOrFail(QSqlQuery &query, const QString &statement, const char *failure);

/// Returns the day's first moment in decimal Unix seconds, for statements.
QString dayStartText(const QDate &date);
