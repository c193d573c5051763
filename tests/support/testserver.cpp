#include "support/testserver.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <atomic>

namespace
{

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("test bench: cannot read %s", qUtf8Printable(path));
    return file.readAll();
}

QSqlQuery run(const QSqlDatabase &database, const QString &sql)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(sql)) {
        qFatal("test bench: %s\n%s", qUtf8Printable(query.lastError().text()), qUtf8Printable(sql));
    }
    return query;
}

} // namespace

QString TestServer::host()
{
    return QStringLiteral("127.0.0.1");
}

int TestServer::port()
{
    const QString folder = qEnvironmentVariable("AUTOREPORT_TEST_SERVER");
    if (folder.isEmpty())
        qFatal("test bench: AUTOREPORT_TEST_SERVER is not set; run the tests with ctest");
    return readFile(folder + QStringLiteral("/port")).trimmed().toInt();
}

QString TestServer::user()
{
    return QStringLiteral("autoreport");
}

QString TestServer::password()
{
    return QStringLiteral("secret");
}

QSqlDatabase TestServer::addConnection(const QString &connectionName, const QString &databaseName)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), connectionName);
    database.setHostName(host());
    database.setPort(port());
    database.setUserName(user());
    database.setPassword(password());
    database.setDatabaseName(databaseName);
    database.setConnectOptions(QStringLiteral("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1"));
    return database;
}

QString TestServer::ownPrefix()
{
    return QStringLiteral("TestDatabase.");
}

TestDatabase::TestDatabase(Tables tables)
{
    static std::atomic<int> made{0};
    databaseName = QStringLiteral("t%1_%2").arg(QCoreApplication::applicationPid()).arg(++made);
    connectionName = TestServer::ownPrefix() + databaseName;

    QSqlDatabase database = TestServer::addConnection(connectionName, QString());
    const auto open = [&database] {
        if (!database.open())
            qFatal("test bench: %s", qUtf8Printable(database.lastError().text()));
    };
    open();
    run(database, QStringLiteral("CREATE DATABASE %1").arg(databaseName));
    database.close();
    database.setDatabaseName(databaseName);
    open();

    const QString folder = QStringLiteral(AUTOREPORT_SOURCE_DIR "/demo/");
    if (tables == Tables::Info)
        execFile(folder + QStringLiteral("tables-info.sql"));
    if (tables == Tables::Schema)
        execFile(folder + QStringLiteral("tables-schema.sql"));
}

TestDatabase::~TestDatabase()
{
    exec(QStringLiteral("DROP DATABASE %1").arg(databaseName));
    database().close();
    QSqlDatabase::removeDatabase(connectionName);
}

QSqlDatabase TestDatabase::database() const
{
    return QSqlDatabase::database(connectionName);
}

void TestDatabase::exec(const QString &sql) const
{
    run(database(), sql);
}

void TestDatabase::exec(const QStringList &statements) const
{
    for (const QString &statement : statements)
        exec(statement);
}

void TestDatabase::execFile(const QString &path) const
{
    static const QRegularExpression endOfStatement(QStringLiteral(";\\s*\n"));
    const QString text = QString::fromUtf8(readFile(path));
    exec(text.split(endOfStatement, Qt::SkipEmptyParts));
}

QVector<QVariantList> TestDatabase::rows(const QString &sql) const
{
    QVector<QVariantList> result;
    QSqlQuery query = run(database(), sql);
    while (query.next()) {
        QVariantList row;
        for (int column = 0; column < query.record().count(); ++column)
            row.append(query.value(column));
        result.append(row);
    }
    return result;
}

QVariant TestDatabase::value(const QString &sql) const
{
    QSqlQuery query = run(database(), sql);
    return query.next() ? query.value(0) : QVariant();
}
