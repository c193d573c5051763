#include "options/connectionoptions.h"

#include "db/connectiondefaults.h"
#include "db/serverlist.h"

#include <QSqlError>
#include <QStringList>

QSqlDatabase ConnectionOptions::addDatabase(const QString &connectionName, OnLoss onLoss) const
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), connectionName);
    db.setHostName(host);
    db.setPort(port);
    db.setUserName(user);
    db.setPassword(password);
    db.setDatabaseName(databaseName);
    // A host reconnects to survive a restart of the server, as DBManager does for schemas. A
    // command must not reconnect, because the driver would do so silently and lose session settings
    // such as read-only.
    const QString always = onLoss == OnLoss::Reconnect ? reconnectingOptions : commonOptions;
    db.setConnectOptions(always + encryption() + limits());
    return db;
}

/// Returns the driver's options for the certificate files. Any of these options makes the driver
/// use TLS; openTrusted() enforces the authority. DBManager copies the options to its connections
/// to schemas.
QString ConnectionOptions::encryption() const
{
    QString options;
    const auto add = [&options](const char *name, const QString &file) {
        if (!file.isEmpty())
            options += QStringLiteral(";%1=%2").arg(QLatin1String(name), file);
    };
    add("SSL_CA", authorityFile);
    add("SSL_CERT", certificateFile);
    add("SSL_KEY", keyFile);
    return options;
}

/// Returns the driver's options for the time limits. A wait never takes longer than its limit,
/// because the client library does not retry.
QString ConnectionOptions::limits() const
{
    if (timeoutSeconds == 0)
        return QString();
    const QString sending =
        QStringLiteral(";MYSQL_OPT_CONNECT_TIMEOUT=%1;MYSQL_OPT_WRITE_TIMEOUT=%1")
            .arg(timeoutSeconds);
    return waitsForAnswers
               ? sending
               : sending + QStringLiteral(";MYSQL_OPT_READ_TIMEOUT=%1").arg(timeoutSeconds);
}

QString ConnectionOptions::openError(const QSqlDatabase &db)
{
    const QString driverText = db.lastError().text().simplified();
    const QString error = QStringLiteral("cannot open the database '%1' on %2 as '%3': %4")
                              .arg(db.databaseName(), serverText(db.hostName(), db.port()),
                                   db.userName(), driverText);
    return driverText.contains(QLatin1String("TLS"))
               ? error + QStringLiteral("; is the server's certificate signed by --db-ca?")
               : error;
}
