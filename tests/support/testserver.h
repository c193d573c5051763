#pragma once

#include <QProcessEnvironment>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include <functional>

/// The private database server that the tests of one run share.
/// AUTOREPORT_TEST_SERVER names its folder. An error here is an error of the bench, not of the code
/// under test: the program prints it and ends at once.
namespace TestServer
{

const QString host = "127.0.0.1";
const QString user = "autoreport";
const QString password = "secret";
/// The prefix of the names of the bench's own connections.
const QString ownPrefix = "TestDatabase.";
int port();

/// Registers a connection to `databaseName` and does not open it. The caller removes it.
QSqlDatabase addConnection(const QString &connectionName, const QString &databaseName);

/// Calls `work` with an open connection of its own, which the calling thread may use.
void onConnection(const QString &database, const std::function<void(const QSqlDatabase &)> &work);

/// The options of the program that lead to that database, and its environment with the password;
/// the clock is set to `moment` unless it is empty.
QStringList options(const QString &databaseName);
QProcessEnvironment environment(const QString &moment = QString());

} // namespace TestServer

/// A server for one test: all databases created during its lifetime are on it.
class OwnServer
{
public:
    explicit OwnServer(const QStringList &serverOptions = {});
    ~OwnServer() { run("stop"); }
    Q_DISABLE_COPY(OwnServer)
    void restart() const { run("restart"); }

    const QTemporaryDir folder;

private:
    void run(const char *command, const QStringList &serverOptions = {}) const;
};

/// A database for one test, dropped by the destructor.
/// It keeps a connection of its own, to be used on the thread that made the object alone. A failed
/// statement ends the test program.
class TestDatabase
{
public:
    enum class Tables { None, Info, Schema };

    explicit TestDatabase(Tables tables = Tables::None);
    ~TestDatabase();
    Q_DISABLE_COPY(TestDatabase)

    QString name() const { return databaseName; }
    QSqlDatabase database() const { return QSqlDatabase::database(connectionName); }

    /// Runs one statement, or several that are separated by semicolons at line ends.
    void exec(const QString &statements) const;
    /// Of an information database: lists `databaseName` under each of the tokens.
    void addSchemas(const QStringList &tokens, const QString &databaseName) const;

    QVector<QVariantList> rows(const QString &sql) const;
    /// Returns the first value of the first row; invalid without rows.
    QVariant value(const QString &sql) const;
    /// Of a schema: returns how many mails are in its queue.
    int mails() const { return value("SELECT COUNT(*) FROM emails").toInt(); }
    /// Returns how many connections to this database are in a state that matches.
    int connectionsIn(const QString &state) const;

private:
    QSqlQuery run(const QString &sql) const;

    QString databaseName;
    QString connectionName;
};
