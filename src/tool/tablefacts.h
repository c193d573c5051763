#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QVector>

#include <limits>

/**
 * What the server's catalogue says about the tables that all reports need: the settings, the mails
 * and the people.
 *
 * Leaves out what is missing and what the account may not see.
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

    QVector<Table> unsafeTables; ///< tables of mails or settings that have no transactions
    QVector<Column> texts;       ///< columns whose text becomes part of a mail or a workbook
    bool isNameUnique = false;   ///< whether no two settings can have the same name
    // An unknown limit is so large that it never applies.
    qint64 packetBytes = std::numeric_limits<qint64>::max(); ///< of a statement
    qint64 dataBytes = std::numeric_limits<qint64>::max();   ///< of a mail's attachment

    /// Reads everything with one statement or, if that fails, with a statement for each part, so
    /// that a missing table spoils only its own part.
    static TableFacts read(const QSqlDatabase &database);
};
