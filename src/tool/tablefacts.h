#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <limits>

class QSqlDatabase;
struct Answer;

/// Returns how many seconds ago `table` was last written, by the server's clock; the largest number
/// if unknown.
qint64 secondsSinceWritten(const QSqlDatabase &database, const char *table);

/**
 * What the server's catalogue says about the tables that the reports need.
 *
 * Tables and columns that are missing, or that the account may not see, are left out. Reading the
 * catalogue is fast, because the server does not open the tables.
 */
struct TableFacts {
    struct Table {
        QString name;
        QString engine;
    };
    struct Column {
        QString table;
        QString name;
        QString characterSet;
    };

    QVector<Table> unsafeTables;  ///< `emails` or `vars`, if its engine is not InnoDB
    QVector<Column> lossyColumns; ///< columns of texts, if their character set is not UTF-8
    bool isReadOnly = false;      ///< whether the server refuses writes by ordinary accounts
    bool isNameUnique = false;    ///< whether a key makes the names in `vars` unique
    // An unknown limit is the largest number, so that it never applies.
    qint64 packetBytes = std::numeric_limits<qint64>::max(); ///< the largest accepted statement
    qint64 dataBytes = std::numeric_limits<qint64>::max();   ///< the capacity of `emails.data`

    /// Equal for two schemas if their tables have the same columns, collations and engines, and if
    /// their accounts have the same rights on them. Empty if unknown, or if one of the tables is a
    /// view, because a view depends on other tables.
    QByteArray digest;

    /// Returns the statements that read the facts about `tables` and the keys of `vars`.
    static QStringList statements(const QStringList &tables);
    /// Returns the facts in the answers to statements(), which must be in the same order.
    static TableFacts of(const QVector<Answer> &answers);
};
