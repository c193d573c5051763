#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// The server's answer to a statement.
struct Answer {
    QVector<QVector<QVariant>> rows;
    QSqlError error; ///< of type NoError if the statement was executed

    bool isOk() const { return error.type() == QSqlError::NoError; }
};

/**
 * Executes the statements in order and returns an answer for each. A statement that fails does not
 * keep the rest from being executed. Statements that share a packet cost a single round trip. The
 * server stops a packet at an error, so the rest of the statements needs another packet:
 * statements that may fail should come last.
 */
QVector<Answer> answersTo(const QSqlDatabase &database, const QStringList &statements);
