#pragma once

#include "support/testdata.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <atomic>
#include <functional>

/// The private database server that the tests of one run share. AUTOREPORT_TEST_SERVER names its
/// folder. An error here is an error of the bench, not of the code under test: the program prints
/// it and ends at once.
namespace TestServer
{

const QString host = "127.0.0.1";
const QString user = "autoreport";
const QString password = "secret";
/// The prefix of the names of the bench's own connections.
const QString ownPrefix = "TestDatabase.";

inline int port()
{
    const QString folder = qEnvironmentVariable("AUTOREPORT_TEST_SERVER");
    if (folder.isEmpty())
        qFatal("test bench: AUTOREPORT_TEST_SERVER is not set; run the tests with ctest");
    return readFile(folder + "/port").trimmed().toInt();
}

/// Registers a connection to `databaseName` and does not open it. The caller removes it.
inline QSqlDatabase addConnection(const QString &connectionName, const QString &databaseName)
{
    QSqlDatabase database = QSqlDatabase::addDatabase("QMYSQL", connectionName);
    database.setHostName(host);
    database.setPort(port());
    database.setUserName(user);
    database.setPassword(password);
    database.setDatabaseName(databaseName);
    database.setConnectOptions("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1");
    return database;
}

/// Calls `work` with an open connection of its own, which the calling thread may use.
template <typename Work>
void onConnection(const QString &databaseName, const Work &work)
{
    const QString name = QUuid::createUuid().toString();
    {
        QSqlDatabase database = addConnection(name, databaseName);
        if (!database.open())
            qFatal("test bench: cannot open '%s'", qPrintable(databaseName));
        work(database);
    }
    QSqlDatabase::removeDatabase(name);
}

/// The options of the program that lead to that database.
inline QStringList options(const QString &databaseName)
{
    const QString text("--db-host %1 --db-port %2 --db-user %3 --db-name %4");
    return text.arg(host).arg(port()).arg(user, databaseName).split(' ');
}

/// The program's environment, with the password; the clock is set to `moment` unless it is empty.
inline QProcessEnvironment environment(const QString &moment = QString())
{
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    result.insert("AUTOREPORT_DB_PASSWORD", password);
    result.insert("RUNTIME_DIRECTORY", qEnvironmentVariable("AUTOREPORT_TEST_SERVER") + "/hosts");
    if (moment.isEmpty())
        return result;
    result.insert("LD_PRELOAD", AUTOREPORT_FAKETIME);
    result.insert("FAKETIME", "@" + moment);
    result.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
    return result;
}

} // namespace TestServer

/// A server for one test: all databases created during its lifetime are on it.
class OwnServer
{
public:
    explicit OwnServer(const QStringList &serverOptions = {})
    {
        run("start", serverOptions);
        qputenv("AUTOREPORT_TEST_SERVER", folder.filePath("server").toLocal8Bit());
    }
    ~OwnServer() { run("stop"); }
    Q_DISABLE_COPY(OwnServer)
    void restart() const { run("restart"); }

    const QTemporaryDir folder;

private:
    void run(const char *command, const QStringList &serverOptions = {}) const
    {
        const QStringList arguments{command, folder.filePath("server")};
        if (QProcess::execute(AUTOREPORT_PRIVATE_MARIADB, arguments + serverOptions) != 0)
            qFatal("test bench: cannot %s the server", command);
    }
};

/// A database for one test, dropped by the destructor. It keeps a connection of its own, to be used
/// on the thread that made the object alone. A failed statement ends the test program.
class TestDatabase
{
public:
    enum class Tables { None, Info, Schema };

    explicit TestDatabase(Tables tables = Tables::None)
    {
        static std::atomic<int> made{0};
        databaseName = QString("t%1_%2").arg(QCoreApplication::applicationPid()).arg(++made);
        connectionName = TestServer::ownPrefix + databaseName;

        QSqlDatabase database = TestServer::addConnection(connectionName, QString());
        exec("CREATE DATABASE " + databaseName);
        database.close(); // the next statement opens it again
        database.setDatabaseName(databaseName);
        if (tables == Tables::None)
            return;
        const QString file = tables == Tables::Info ? "tables-info.sql" : "tables-schema.sql";
        exec(readFile(AUTOREPORT_SOURCE_DIR "/demo/" + file));
    }
    ~TestDatabase()
    {
        exec("DROP DATABASE " + databaseName);
        database().close();
        QSqlDatabase::removeDatabase(connectionName);
    }
    Q_DISABLE_COPY(TestDatabase)

    QString name() const { return databaseName; }
    QSqlDatabase database() const { return QSqlDatabase::database(connectionName); }

    /// Runs one statement, or several that are separated by semicolons at line ends.
    void exec(const QString &statements) const
    {
        static const QRegularExpression end(";\\s*\n\\s*");
        for (const QString &statement : statements.split(end, Qt::SkipEmptyParts))
            run(statement);
    }
    /// Of an information database: lists the database `schema` under each of the tokens.
    void addSchemas(const QStringList &tokens, const QString &schema) const
    {
        const QString row = QString("('%4', '%1', '%2', TO_BASE64('%3'), 1)")
                                .arg(schema, TestServer::user, TestServer::password);
        QStringList rows;
        for (const QString &token : tokens)
            rows.append(QString(row).replace("%4", token));
        exec("INSERT INTO `schemas` (token, name, user, pass, status) VALUES " + rows.join(','));
    }

    QVector<QVariantList> rows(const QString &sql) const
    {
        QVector<QVariantList> result;
        QSqlQuery query = run(sql);
        while (query.next()) {
            QVariantList row;
            for (int column = 0; column < query.record().count(); ++column)
                row.append(query.value(column));
            result.append(row);
        }
        return result;
    }
    /// Returns the first value of the first row; invalid without rows.
    QVariant value(const QString &sql) const
    {
        QSqlQuery query = run(sql);
        return query.next() ? query.value(0) : QVariant();
    }
    /// Of a schema: returns how many mails are in its queue.
    int mails() const { return value("SELECT COUNT(*) FROM emails").toInt(); }
    /// Returns how many connections to this database are in a state that matches.
    int connectionsIn(const QString &state) const
    {
        const QString sql("SELECT COUNT(*) FROM information_schema.processlist WHERE db = '%1' AND "
                          "COALESCE(state, '') LIKE '%2'");
        return value(sql.arg(databaseName, state)).toInt();
    }

private:
    QSqlQuery run(const QString &sql) const
    {
        const QSqlDatabase db = database();
        QSqlQuery query(db);
        query.setForwardOnly(true);
        if (!query.exec(sql))
            qFatal("test bench: %s %s\n%s", qUtf8Printable(db.lastError().text()),
                   qUtf8Printable(query.lastError().text()), qUtf8Printable(sql));
        return query;
    }

    QString databaseName;
    QString connectionName;
};
