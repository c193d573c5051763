#pragma once

#include "support/testserver.h"

#include <QByteArray>
#include <QVector>

#include <functional>

/// A statement as the server got it; a prepared one with the values it was executed with.
struct RecordedStatement {
    QByteArray text;
    bool prepared = false;
    QVector<QByteArray> values;
};

using Recording = QVector<RecordedStatement>;

/**
 * The statements that the server got over other connections than that of `database` while `work`
 * ran, taken from its general log. What a driver says to set its connection up is left out.
 */
Recording recordStatements(const TestDatabase &database, const std::function<void()> &work);

void saveRecording(const QString &path, const Recording &recording);
Recording loadRecording(const QString &path);
