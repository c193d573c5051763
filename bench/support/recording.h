#pragma once

#include "support/testserver.h"

#include <QByteArray>
#include <QVector>

#include <functional>

/// A statement that the server received. If it was a prepared statement, `values` are the values
/// with which it was executed.
struct RecordedStatement {
    QByteArray text;
    bool prepared = false;
    QVector<QByteArray> values;
};

using Recording = QVector<RecordedStatement>;

/**
 * Runs `work` and returns the statements that the server received meanwhile, read from its general
 * log. Leaves out those of the connection of `database`, and SET NAMES, with which a driver sets up
 * its connection.
 */
Recording recordStatements(const TestDatabase &database, const std::function<void()> &work);

void saveRecording(const QString &path, const Recording &recording);
Recording loadRecording(const QString &path);
