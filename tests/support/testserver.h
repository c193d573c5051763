#pragma once

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

QString host();
int port();
QString user();
QString password();

/// Registers a connection to `databaseName`, not opened. The caller removes it.
QSqlDatabase addConnection(const QString &connectionName, const QString &databaseName);

/// What the name of every connection of the bench itself begins with.
QString ownPrefix();

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
    /// Runs a file of statements, each of which ends with a semicolon at the end of a line.
    void execFile(const QString &path) const;

    QVector<QVariantList> rows(const QString &sql) const;
    /// The first value of the first row; invalid without rows.
    QVariant value(const QString &sql) const;

private:
    QString databaseName;
    QString connectionName;
};
