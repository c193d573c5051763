#pragma once

#include <QProcessEnvironment>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

/**
 * The private database server that the tests of one run share.
 *
 * AUTOREPORT_TEST_SERVER names its folder. Whatever goes wrong here is a fault of the bench, not
 * of the code under test: the program ends at once, with the reason.
 */
namespace TestServer
{

inline QString host()
{
    return "127.0.0.1";
}
int port();
inline QString user()
{
    return "autoreport";
}
inline QString password()
{
    return "secret";
}

/// Registers a connection to `databaseName`, not opened. The caller removes it.
QSqlDatabase addConnection(const QString &connectionName, const QString &databaseName);

/// What the name of every connection of the bench itself begins with.
inline QString ownPrefix()
{
    return "TestDatabase.";
}

/// The options of the program that lead to that database, and its environment with the password;
/// the clock is set to `moment` unless it is empty.
QStringList options(const QString &databaseName);
QProcessEnvironment environment(const QString &moment = QString());

} // namespace TestServer

/**
 * A database of its own for one test, dropped with the object.
 *
 * It keeps a connection of its own, to be used on the thread that made the object alone. A failed
 * statement ends the test program.
 */
class TestDatabase
{
public:
    enum class Tables { None, Info, Schema };

    explicit TestDatabase(Tables tables = Tables::None);
    ~TestDatabase();
    Q_DISABLE_COPY(TestDatabase)

    QString name() const { return databaseName; }
    QSqlDatabase database() const;

    void exec(const QString &sql) const;
    void exec(const QStringList &statements) const;
    /// Of an information database: lists `databaseName` under each of the tokens.
    void addSchemas(const QStringList &tokens, const QString &databaseName) const;

    QVector<QVariantList> rows(const QString &sql) const;
    /// The first value of the first row; invalid without rows.
    QVariant value(const QString &sql) const;

private:
    QString databaseName;
    QString connectionName;
};
