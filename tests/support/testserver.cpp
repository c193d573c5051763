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

int TestServer::port()
{
    const QString folder = qEnvironmentVariable("AUTOREPORT_TEST_SERVER");
    if (folder.isEmpty())
        qFatal("test bench: AUTOREPORT_TEST_SERVER is not set; run the tests with ctest");
    return readFile(folder + "/port").trimmed().toInt();
}

QSqlDatabase TestServer::addConnection(const QString &connectionName, const QString &databaseName)
{
    QSqlDatabase database = QSqlDatabase::addDatabase("QMYSQL", connectionName);
    database.setHostName(host());
    database.setPort(port());
    database.setUserName(user());
    database.setPassword(password());
    database.setDatabaseName(databaseName);
    database.setConnectOptions("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1");
    return database;
}

QStringList TestServer::options(const QString &databaseName)
{
    const QString text("--db-host %1 --db-port %2 --db-user %3 --db-name %4");
    return text.arg(host()).arg(port()).arg(user(), databaseName).split(' ');
}

QProcessEnvironment TestServer::environment(const QString &moment)
{
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    result.insert("AUTOREPORT_DB_PASSWORD", password());
    if (moment.isEmpty())
        return result;
    result.insert("LD_PRELOAD", AUTOREPORT_FAKETIME);
    result.insert("FAKETIME", "@" + moment);
    result.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
    return result;
}

TestDatabase::TestDatabase(Tables tables)
{
    static std::atomic<int> made{0};
    databaseName = QString("t%1_%2").arg(QCoreApplication::applicationPid()).arg(++made);
    connectionName = TestServer::ownPrefix() + databaseName;

    QSqlDatabase database = TestServer::addConnection(connectionName, QString());
    const auto open = [&database] {
        if (!database.open())
            qFatal("test bench: %s", qUtf8Printable(database.lastError().text()));
    };
    open();
    run(database, QString("CREATE DATABASE %1").arg(databaseName));
    database.close();
    database.setDatabaseName(databaseName);
    open();

    if (tables == Tables::None)
        return;
    static const QRegularExpression endOfStatement(";\\s*\n");
    const QString file = tables == Tables::Info ? "tables-info.sql" : "tables-schema.sql";
    const QString text = readFile(AUTOREPORT_SOURCE_DIR "/demo/" + file);
    exec(text.split(endOfStatement, Qt::SkipEmptyParts));
}

TestDatabase::~TestDatabase()
{
    exec(QString("DROP DATABASE %1").arg(databaseName));
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

void TestDatabase::addSchemas(const QStringList &tokens, const QString &name) const
{
    const QString row =
        QString("('%4', '%1', '%2', '%3', 1)")
            .arg(name, TestServer::user(), QString(TestServer::password().toUtf8().toBase64()));
    QStringList rows;
    for (const QString &token : tokens)
        rows.append(QString(row).replace("%4", token));
    exec("INSERT INTO `schemas` (token, name, user, pass, status) VALUES " + rows.join(','));
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
