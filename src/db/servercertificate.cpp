#include "db/servercertificate.h"

#include "db/autocommit.h"
#include "db/clientlibrary.h"
#include "db/serverconnection.h"
#include "db/serverlist.h"
#include "db/serversocket.h"

namespace
{

// Functions of OpenSSL, which the client library links.
using VerifyResult = long (*)(const void *session);
using ErrorText = const char *(*)(long result);
// A function of the client library.
using Cipher = const char *(*)(MYSQL *connection);

const QLatin1String tlsError("2026"); // the client library's code for a TLS error

/// The first members of MARIADB_TLS. The library's header cannot be used, because it includes a
/// header that the distribution does not install.
struct TlsHead {
    void *data;
    MARIADB_PVIO *io;
    void *session;
};

bool namesAuthority(const QSqlDatabase &database)
{
    return database.connectOptions().contains(QLatin1String("SSL_CA="));
}

/// Returns why the server cannot be trusted, or an empty text. OpenSSL verifies the certificate in
/// every handshake, but the program must query the result.
QString certificateError(const QSqlDatabase &database)
{
    MYSQL *connection = clientHandle(database);
    if (!connection)
        return QString();
    const auto cipher = reinterpret_cast<Cipher>(clientFunction(database, "mysql_get_ssl_cipher"));
    if (!cipher || !cipher(connection))
        return QStringLiteral("the connection is not encrypted");
    if (!isMariaDb(database)) // MySQL's library does not reveal the certificate
        return QString();
    const MARIADB_PVIO *io = connection->net.pvio;
    const auto *tls = reinterpret_cast<const TlsHead *>(io ? io->ctls : nullptr);
    const auto result =
        reinterpret_cast<VerifyResult>(clientFunction(database, "SSL_get_verify_result"));
    const auto text =
        reinterpret_cast<ErrorText>(clientFunction(database, "X509_verify_cert_error_string"));
    if (!result || !text || !tls || tls->io != io)
        return QStringLiteral("the client library does not reveal the server's certificate");
    const long found = result(tls->session);
    return found == 0 ? QString() : QString::fromLatin1(text(found));
}

} // namespace

bool openTrusted(QSqlDatabase &database)
{
    if (!database.open())
        return false;
    if (!namesAuthority(database))
        return enableAutocommit(database);
    const QString error = certificateError(database);
    if (error.isEmpty()) {
        forbidReconnect(database);
        return enableAutocommit(database);
    }
    database.close();
    setOpenError(database, QStringLiteral("TLS/SSL error: %1").arg(error), tlsError);
    return false;
}

bool isUsable(const QSqlDatabase &database)
{
    return database.isOpen() && isAtWork(database) &&
           (!namesAuthority(database) || serverAnswers(database));
}
