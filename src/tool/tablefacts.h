#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <limits>

class QSqlDatabase;
struct Answer;

/// Returns how many seconds ago a table of this database was last written, by the server's clock;
/// the largest number if unknown.
qint64 secondsSinceWritten(const QSqlDatabase &database, const char *table);

/**
 * What the server's catalogue says of the tables that the reports need.
 *
 * What is missing, or not to be seen by the account, is left out. The server reads its catalogue
 * without opening the tables.
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

    QVector<Table> unsafeTables;  ///< tables of mails or settings that have no transactions
    QVector<Column> lossyColumns; ///< columns for mails that cannot hold all characters
    bool isReadOnly = false;      ///< whether the server refuses writes of ordinary accounts
    bool isNameUnique = false;    ///< whether no two settings can have the same name
    // An unknown limit is so large that it never applies.
    qint64 packetBytes = std::numeric_limits<qint64>::max(); ///< of a statement
    qint64 dataBytes = std::numeric_limits<qint64>::max();   ///< of a mail's attachment

    /// The same for schemas whose tables have the same columns, engines and character sets, on
    /// which the account has the same rights. Empty if the server does not say, or if one of the
    /// tables is a view, which depends on other tables.
    QByteArray digest;

    /// Returns the statements that read the facts. The digest is that of these tables.
    static QStringList statements(const QStringList &tables);
    /// Returns what the answers to these statements say.
    static TableFacts of(const QVector<Answer> &answers);
};
