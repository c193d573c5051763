#include "host/hosttest.h"

namespace
{

/// Two authorities, and the certificates of a server and a client that the first one signed.
class Certificates
{
public:
    Certificates()
    {
        const QString make = R"(
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
        QProcess openssl;
        openssl.start("sh", {"-c", make, folder.path()});
        if (!openssl.waitForFinished(patienceMs) || openssl.exitCode() != 0)
            qFatal("test bench: %s", openssl.readAllStandardError().constData());
    }

    /// Returns the text with the folder in place of "DIR".
    QString in(QString text) const { return text.replace("DIR", folder.path()); }

private:
    const QTemporaryDir folder;
};

} // namespace

/// On a server of its own, where the account "safe" must come encrypted and the account "known"
/// with a certificate: a connection without either is one that the program forgot.
class TestEncryption : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { info.reset(); } // before the server it is on

    void serves_data()
    {
        addRow("authority", "safe", "--db-ca DIR/ours.pem");
        addRow("certificate", "known",
               "--db-ca DIR/ours.pem --db-cert DIR/client.pem --db-key DIR/client.key");
    }

    /// Scan, check connection and worker: a mail is queued only if each of them came encrypted.
    void serves()
    {
        auto [user, options] = fetch<QString, QString>();
        options = certificates.in(" --db-user " + user + ' ' + options);
        info->exec("UPDATE `schemas` SET user = '" + user + "'");
        program = start("serve" + options);
        QTRY_COMPARE_WITH_TIMEOUT(bench->mails(), 1, patienceMs);

        // The scan's connection must not reconnect by itself: that server would not be verified.
        server.restart();
        const TestDatabase later(TestDatabase::Tables::Schema);
        addPeople(later, 1);
        enableDailyReport(later, "a@firma.sk");
        info->addSchemas({"later"}, later.name());
        info->exec("UPDATE `schemas` SET user = '" + user + "'");
        program->send(SIGHUP);
        QTRY_COMPARE_WITH_TIMEOUT(later.mails(), 1, patienceMs);
        QVERIFY(program->stops());

        const QString shown = run("check" + options).output;
        QVERIFY2(shown.contains("encrypted with TLS") && shown.contains("2 of 2 schemas opened"),
                 qPrintable(shown));
    }

    void refused_data()
    {
        addRow("not encrypted", "", "Access denied");
        addRow("other authority", "--db-ca DIR/other.pem", "certificate signed by --db-ca?");
        addRow("no such file", "--db-ca DIR/missing.pem", "missing.pem': No such file");
        addRow("no key", "--db-ca DIR/ours.pem --db-cert DIR/client.pem", "must be given together");
    }

    void refused()
    {
        const auto [options, text] = fetch<QString, QString>();
        holdRefused("--db-user safe " + options, text);
    }

    /// Runs last: later tests would use the server that this one starts.
    void refusesServerWithoutEncryption()
    {
        const OwnServer plain({"--skip-ssl"});
        const TestDatabase database(TestDatabase::Tables::Info);
        const QString port = QString(" --db-port %1 ").arg(TestServer::port());
        const QString way = port + "--db-name " + database.name();
        QVERIFY(run("check" + way).output.contains("the connection is not encrypted"));
        holdRefused("--db-ca DIR/ours.pem" + way, "certificate signed by --db-ca?");
    }

private:
    void prepare() override
    {
        HostTest::prepare();
        addPeople(bench->schema, 1);
        enableDailyReport(bench->schema, "a@firma.sk");
        const QString grant = "GRANT ALL ON *.* TO %1@'127.0.0.1' IDENTIFIED BY 'secret' REQUIRE ";
        info->exec(grant.arg("safe") + "SSL");
        info->exec(grant.arg("known") + "X509");
    }

    void holdRefused(const QString &options, const QString &text) const
    {
        for (const QString command : {"serve ", "check "}) {
            const Outcome outcome = run(command + certificates.in(options));
            QVERIFY(outcome.status > 0);
            QVERIFY2(outcome.errors.contains(text), qPrintable(outcome.errors));
        }
    }

    const Certificates certificates;
    const OwnServer server{{certificates.in("--ssl-ca=DIR/ours.pem"),
                            certificates.in("--ssl-cert=DIR/server.pem"),
                            certificates.in("--ssl-key=DIR/server.key")}};
};

QTEST_GUILESS_MAIN(TestEncryption)
#include "tst_encryption.moc"
