#include "support/bareclient.h"

#include "support/measure.h"

#include <mysql.h>

void BareClient::Close::operator()(st_mysql *connection) const
{
    mysql_close(connection);
}

BareClient::BareClient(const QString &schema)
    : connection(mysql_init(nullptr))
{
    // Use the same character set as Qt's driver, so that the server sends the same bytes.
    mysql_options(connection.get(), MYSQL_SET_CHARSET_NAME, "utf8mb3");
    const bool open =
        mysql_real_connect(connection.get(), qPrintable(TestServer::host),
                           qPrintable(TestServer::user), qPrintable(TestServer::password),
                           qPrintable(schema), static_cast<unsigned int>(TestServer::port()),
                           nullptr, CLIENT_IGNORE_SPACE | CLIENT_MULTI_STATEMENTS);
    Bench::require(open, QString::fromUtf8(mysql_error(connection.get())));
}

void BareClient::run(const RecordedStatement &statement)
{
    if (statement.prepared)
        execute(statement);
    else
        query(statement.text);
}

void BareClient::query(const QByteArray &statement)
{
    // The status is 0 for each statement that succeeds, -1 after the last one, above 0 on an error.
    int status = mysql_real_query(connection.get(), statement.constData(),
                                  static_cast<unsigned long>(statement.size()));
    for (; status == 0; status = mysql_next_result(connection.get())) {
        if (MYSQL_RES *result = mysql_store_result(connection.get())) {
            while (mysql_fetch_row(result) != nullptr) {
            }
            mysql_free_result(result);
        }
    }
    Bench::require(status < 0, QString::fromUtf8(mysql_error(connection.get())));
}

void BareClient::execute(const RecordedStatement &statement)
{
    QVector<MYSQL_BIND> binds(statement.values.size());
    for (int i = 0; i < binds.size(); ++i) {
        binds[i] = MYSQL_BIND{};
        const QByteArray &value = statement.values[i];
        binds[i].buffer_type = value == "NULL" ? MYSQL_TYPE_NULL : MYSQL_TYPE_STRING;
        binds[i].buffer = const_cast<char *>(value.constData());
        binds[i].buffer_length = static_cast<unsigned long>(value.size());
    }
    MYSQL_STMT *prepared = mysql_stmt_init(connection.get());
    const bool ran = mysql_stmt_prepare(prepared, statement.text.constData(),
                                        static_cast<unsigned long>(statement.text.size())) == 0 &&
                     mysql_stmt_bind_param(prepared, binds.data()) == 0 &&
                     mysql_stmt_execute(prepared) == 0 && mysql_stmt_store_result(prepared) == 0;
    Bench::require(ran, QString::fromUtf8(mysql_stmt_error(prepared)));
    while (mysql_stmt_fetch(prepared) == 0) {
    }
    mysql_stmt_close(prepared);
}

void BareClient::openLikeQt(const QString &schema)
{
    const QByteArray probe("SELECT ? + ?"); // tests whether the server can prepare statements
    MYSQL_STMT *prepared = mysql_stmt_init(connection.get());
    const bool ran = mysql_select_db(connection.get(), qPrintable(schema)) == 0 &&
                     mysql_set_character_set(connection.get(), "utf8mb3") == 0 &&
                     mysql_stmt_prepare(prepared, probe.constData(),
                                        static_cast<unsigned long>(probe.size())) == 0;
    mysql_stmt_close(prepared);
    Bench::require(ran, QStringLiteral("the server refuses what Qt's driver asks"));
}
