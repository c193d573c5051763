#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// What the server answered to a statement.
struct Answer {
    QVector<QVector<QVariant>> rows;
    QSqlError error; ///< of type NoError if the statement was executed

    bool isOk() const { return error.type() == QSqlError::NoError; }
};

/**
 * Executes all of these statements in this order, whether or not one fails, and returns an answer
 * for each. Statements that share a packet cost a single round trip. The server stops at an error,
 * so the statements after it need another packet: put those that may fail last.
 */
QVector<Answer> answersTo(const QSqlDatabase &database, const QStringList &statements);
