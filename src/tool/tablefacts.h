#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QVector>

#include <limits>

/**
 * What the server's catalogue says of the tables that all reports need: the settings, the mails and
 * the people.
 *
 * What is missing, or not to be seen by the account, is left out.
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

    QVector<Table> unsafeTables; ///< of mails and settings, those without InnoDB's transactions
    QVector<Column> texts;       ///< what becomes part of a mail or a workbook
    bool isNameUnique = false;   ///< whether no two settings can have the same name
    // A limit that is not known does not apply.
    qint64 packetBytes = std::numeric_limits<qint64>::max(); ///< of a statement
    qint64 dataBytes = std::numeric_limits<qint64>::max();   ///< of a mail's attachment

    /// Reads all of it by one statement, or part by part if one of them fails.
    static TableFacts read(const QSqlDatabase &database);
};
