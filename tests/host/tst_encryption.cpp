#include "support/hostprogram.h"
#include "support/logcapture.h"
#include "support/testdata.h"
#include "support/testhost.h"

#include <QTemporaryDir>

namespace
{

/// Two authorities, and the certificates of a server and a client that the first one signed.
const char *const makeCertificates = R"(
set -e
cd "$0"
key="-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes"
for name in ours other; do
  openssl req -x509 $key -days 2 -subj "/CN=$name" -keyout $name.key -out $name.pem
done
for name in server client; do
  openssl req $key -subj "/CN=$name" -keyout $name.key -out $name.csr
  openssl x509 -req -in $name.csr -CA ours.pem -CAkey ours.key -CAcreateserial -days 2 -out $name.pem
done
)";

} // namespace

// On a server of its own, where the account "safe" must come encrypted and the account "known" with
// a certificate: a connection without either is one that the program forgot.
class TestEncryption : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString folder = certificates.path();
        QProcess openssl;
        openssl.start("sh", {"-c", makeCertificates, folder});
        QVERIFY(openssl.waitForFinished(patienceMs));
        QVERIFY2(openssl.exitCode() == 0, openssl.readAllStandardError());
        server = std::make_unique<OwnServer>(QStringList{"--ssl-ca=" + file("ours.pem"),
                                                         "--ssl-cert=" + file("server.pem"),
                                                         "--ssl-key=" + file("server.key")});
        info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
        schema = std::make_unique<TestDatabase>(TestDatabase::Tables::Schema);
        info->addSchemas({"firm"}, schema->name());
        addPeople(*schema, 1);
        enableDailyReport(*schema, "a@firma.sk");
        const QString account =
            "GRANT ALL ON *.* TO %1@'127.0.0.1' IDENTIFIED BY 'secret' REQUIRE ";
        info->exec(account.arg("safe") + "SSL");
        info->exec(account.arg("known") + "X509");
    }

    void cleanupTestCase()
    {
        schema.reset();
        info.reset();
    }

    void serves_data()
    {
        addColumns<QString, QString>("user", "options");
        addRow("authority", "safe", "--db-ca ours.pem");
        addRow("certificate", "known", "--db-ca ours.pem --db-cert client.pem --db-key client.key");
    }

    /// Scan, check connection and worker: a mail is queued only if each of them came encrypted.
    void serves()
    {
        QFETCH(QString, user);
        QFETCH(QString, options);
        info->exec("UPDATE `schemas` SET user = '" + user + "'");
        makeDue(*schema);
        start("serve", user, options);
        QTRY_COMPARE_WITH_TIMEOUT(schema->mails(), 1, patienceMs);

        // The scan's own connection does not reconnect by itself: nobody would check that server.
        server->restart();
        const TestDatabase later(TestDatabase::Tables::Schema);
        addPeople(later, 1);
        enableDailyReport(later, "a@firma.sk");
        info->addSchemas({"later"}, later.name());
        info->exec("UPDATE `schemas` SET user = '" + user + "'");
        program->send(SIGHUP);
        QTRY_COMPARE_WITH_TIMEOUT(later.mails(), 1, patienceMs);
        info->exec("DELETE FROM `schemas` WHERE token = 'later'");
        QVERIFY(program->stops());

        start("check", user, options);
        QVERIFY(program->ended());
        const QString shown = program->output();
        QVERIFY2(shown.contains("encrypted with TLS") && shown.contains("1 of 1 schemas opened"),
                 qPrintable(shown));
    }

    void refused_data()
    {
        addColumns<QString, QString>("options", "text");
        addRow("not encrypted", "", "Access denied");
        addRow("other authority", "--db-ca other.pem", "certificate signed by --db-ca?");
        addRow("no such file", "--db-ca missing.pem", "missing.pem': No such file");
        addRow("no key", "--db-ca ours.pem --db-cert client.pem", "must be given together");
    }

    void refused()
    {
        QFETCH(QString, options);
        QFETCH(QString, text);
        holdRefused("safe", options, text);
    }

    /// The last one, as tests find the server that was started last.
    void refusesServerWithoutEncryption()
    {
        const OwnServer plain({"--skip-ssl"});
        const TestDatabase database(TestDatabase::Tables::Info);
        start("check", TestServer::user, "--db-name " + database.name());
        QVERIFY(program->ended());
        QVERIFY(program->output().contains("the connection is not encrypted"));
        holdRefused(TestServer::user, "--db-ca ours.pem --db-name " + database.name(),
                    "certificate signed by --db-ca?");
    }

private:
    QString file(const QString &name) const { return certificates.filePath(name); }

    /// The options may name the certificates' files.
    void start(const QString &command, const QString &user, QString options)
    {
        for (const QString name :
             {"ours.pem", "other.pem", "missing.pem", "client.pem", "client.key"})
            options.replace(" " + name, " " + file(name));
        program = std::make_unique<HostProgram>();
        program->start(QStringList{command} + TestServer::options(info->name()) +
                       QStringList{"--db-user", user} + options.split(' ', Qt::SkipEmptyParts));
    }

    void holdRefused(const QString &user, const QString &options, const QString &text)
    {
        for (const QString command : {"serve", "check"}) {
            start(command, user, options);
            QVERIFY(program->ended());
            QVERIFY(program->exitCode() != 0);
            QVERIFY2(program->log.contains(text), qPrintable(program->log));
        }
    }

    const QTemporaryDir certificates;
    std::unique_ptr<OwnServer> server;
    std::unique_ptr<TestDatabase> info;
    std::unique_ptr<TestDatabase> schema;
    std::unique_ptr<HostProgram> program; ///< started last
};

QTEST_GUILESS_MAIN(TestEncryption)
#include "tst_encryption.moc"
