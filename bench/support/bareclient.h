#pragma once

#include "support/recording.h"

#include <memory>

struct st_mysql;

/**
 * The floor that the product is held against: MariaDB's client library and nothing else. Rows are
 * fetched and dropped. A statement that fails ends the program.
 */
class BareClient
{
public:
    explicit BareClient(const QString &schema);

    void run(const RecordedStatement &statement);
    void query(const QByteArray &statement);

    /// What Qt's driver asks of the server after every connect: three round trips more.
    void openLikeQt(const QString &schema);

private:
    void execute(const RecordedStatement &statement);

    struct Close {
        void operator()(st_mysql *connection) const;
    };
    std::unique_ptr<st_mysql, Close> connection;
};
