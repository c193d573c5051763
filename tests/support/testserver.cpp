#include "support/testserver.h"

#include "support/testdata.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlRecord>
#include <QUuid>

#include <atomic>

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
    database.setHostName(host);
    database.setPort(port());
    database.setUserName(user);
    database.setPassword(password);
    database.setDatabaseName(databaseName);
    database.setConnectOptions("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1");
    return database;
}

void TestServer::onConnection(const QString &databaseName,
                              const std::function<void(const QSqlDatabase &)> &work)
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

QStringList TestServer::options(const QString &databaseName)
{
    const QString text("--db-host %1 --db-port %2 --db-user %3 --db-name %4");
    return text.arg(host).arg(port()).arg(user, databaseName).split(' ');
}

QProcessEnvironment TestServer::environment(const QString &moment)
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

OwnServer::OwnServer(const QStringList &serverOptions)
{
    run("start", serverOptions);
    qputenv("AUTOREPORT_TEST_SERVER", folder.filePath("server").toLocal8Bit());
}

void OwnServer::run(const char *command, const QStringList &serverOptions) const
{
    const QStringList arguments{command, folder.filePath("server")};
    if (QProcess::execute(AUTOREPORT_PRIVATE_MARIADB, arguments + serverOptions) != 0)
        qFatal("test bench: cannot %s the server", command);
}

TestDatabase::TestDatabase(Tables tables)
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

TestDatabase::~TestDatabase()
{
    exec("DROP DATABASE " + databaseName);
    database().close();
    QSqlDatabase::removeDatabase(connectionName);
}

QSqlQuery TestDatabase::run(const QString &sql) const
{
    const QSqlDatabase db = database();
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!query.exec(sql))
        qFatal("test bench: %s %s\n%s", qUtf8Printable(db.lastError().text()),
               qUtf8Printable(query.lastError().text()), qUtf8Printable(sql));
    return query;
}

void TestDatabase::exec(const QString &statements) const
{
    static const QRegularExpression end(";\\s*\n\\s*");
    for (const QString &statement : statements.split(end, Qt::SkipEmptyParts))
        run(statement);
}

void TestDatabase::addSchemas(const QStringList &tokens, const QString &name) const
{
    const QString row =
        QString("('%4', '%1', '%2', '%3', 1)")
            .arg(name, TestServer::user, QString(TestServer::password.toUtf8().toBase64()));
    QStringList rows;
    for (const QString &token : tokens)
        rows.append(QString(row).replace("%4", token));
    exec("INSERT INTO `schemas` (token, name, user, pass, status) VALUES " + rows.join(','));
}

QVector<QVariantList> TestDatabase::rows(const QString &sql) const
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

QVariant TestDatabase::value(const QString &sql) const
{
    QSqlQuery query = run(sql);
    return query.next() ? query.value(0) : QVariant();
}

int TestDatabase::connectionsIn(const QString &state) const
{
    const QString sql("SELECT COUNT(*) FROM information_schema.processlist WHERE db = '%1' AND "
                      "COALESCE(state, '') LIKE '%2'");
    return value(sql.arg(databaseName, state)).toInt();
}
