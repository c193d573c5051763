#pragma once

#include "support/recording.h"

#include <memory>

struct st_mysql;

/**
 * Executes statements with MariaDB's client library alone. The time that this takes is a lower
 * bound for the product's time.
 *
 * Fetches the rows and discards them. If a statement fails, ends the program.
 */
class BareClient
{
public:
    explicit BareClient(const QString &schema);

    void run(const RecordedStatement &statement);
    void query(const QByteArray &statement);

    /// Makes the three additional round trips that Qt's driver makes after every connect.
    void openLikeQt(const QString &schema);

private:
    void execute(const RecordedStatement &statement);

    struct Close {
        void operator()(st_mysql *connection) const;
    };
    std::unique_ptr<st_mysql, Close> connection;
};
