#include "db/mailrepository.h"
#include "support/connectionguard.h"
#include "support/logcapture.h"
#include "support/testserver.h"

#include <QDateTime>
#include <QTest>

#include <memory>

class TestMailRepository : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void comesBackAsItWasQueued();
    void nullsAreNotAlike();
    void incompleteMailIsNotQueued();
    void resetQueuesAgain();
    void failuresAreLogged();

private:
    std::unique_ptr<LogCapture> log;
    std::unique_ptr<TestDatabase> schema;
    std::unique_ptr<MailRepository> repository;
    MailRecord mail;
};

void TestMailRepository::init()
{
    log = std::make_unique<LogCapture>();
    schema = std::make_unique<TestDatabase>(TestDatabase::Tables::Schema);
    repository = std::make_unique<MailRepository>();
    repository->setDB(schema->database());
    mail = MailRecord();
    mail.from = "od@firma.sk";
    mail.to = "komu@firma.sk";
    mail.subject = "Denný report dochádzky";
    mail.body = "It's in the \"attachment\".\n\n\n:to ?";
    mail.data = QByteArray::fromHex("00ff27225c0a");
}

void TestMailRepository::cleanup()
{
    repository.reset();
    schema.reset();
    checkConnections(*log);
    log.reset();
}

void TestMailRepository::comesBackAsItWasQueued()
{
    mail.aid = 4000000000U;
    mail.uid = 7;
    mail.status = "X"; // never written
    uint mid = 0;
    // By name, as the host may call it.
    QVERIFY(QMetaObject::invokeMethod(repository.get(), "addMail", Q_RETURN_ARG(uint, mid),
                                      Q_ARG(MailRecord, mail)));
    QVERIFY(mid > 0);
    const MailRecord read = repository->loadMail(mid);
    QCOMPARE(read.mid, mid);
    QCOMPARE(read.type, QChar(69));
    QCOMPARE(read.status, QString("Q"));
    QCOMPARE(QStringList({read.from, read.to, read.subject, read.body}),
             QStringList({mail.from, mail.to, mail.subject, mail.body}));
    QVERIFY(qAbs(QDateTime::currentSecsSinceEpoch() - read.created) < 60);
    QCOMPARE(read.sent + read.done, 0U);
    QCOMPARE(read.aid, mail.aid);
    QCOMPARE(read.uid, mail.uid);
    QCOMPARE(read.data, mail.data);
    QCOMPARE(repository->loadMail(mid + 1).mid, 0U);
    QCOMPARE(log->lines().size(), 0);
}

void TestMailRepository::nullsAreNotAlike()
{
    mail.type = QChar();
    const uint mid = repository->addMail(mail);
    const QVector<QVariantList> rows = schema->rows(
        "SELECT type IS NULL, aid = 0, uid IS NULL, sent IS NULL, done IS NULL FROM emails");
    QCOMPARE(rows, QVector<QVariantList>({{1, 1, 1, 1, 1}}));
    QCOMPARE(repository->loadMail(mid).type, QChar());
}

void TestMailRepository::incompleteMailIsNotQueued()
{
    for (QString MailRecord::*field : {&MailRecord::from, &MailRecord::to, &MailRecord::subject}) {
        MailRecord incomplete = mail;
        (incomplete.*field).clear();
        QCOMPARE(repository->addMail(incomplete), 0U);
    }
    QCOMPARE(schema->value("SELECT COUNT(*) FROM emails").toInt(), 0);
    QCOMPARE(log->lines().size(), 0);
}

void TestMailRepository::resetQueuesAgain()
{
    const uint mid = repository->addMail(mail);
    schema->exec("UPDATE emails SET status = 'F', done = 5, sent = 4, apiID = 'a'");
    QVERIFY(repository->resetMail(mid));
    const QString sql = "SELECT CONCAT(status, sent, done IS NULL, apiID IS NULL) FROM emails";
    QCOMPARE(schema->value(sql).toString(), QString("Q411"));
    QVERIFY(!repository->resetMail(mid + 1));
    QCOMPARE(log->lines().size(), 0);
}

void TestMailRepository::failuresAreLogged()
{
    repository->debug = true;
    schema->exec("ALTER TABLE emails MODIFY subject VARCHAR(3)");
    QCOMPARE(repository->addMail(mail), 0U);
    schema->exec("DROP TABLE emails");
    QCOMPARE(repository->addMail(mail), 0U);
    QCOMPARE(repository->loadMail(8).mid, 0U);
    QVERIFY(!repository->resetMail(0));
    QVERIFY(!repository->resetMail(9));

    QVERIFY(log->begin(QtCriticalMsg, {"MailRepository::addMail() SQL ERROR: ",
                                       "MailRepository::addMail() Prepare failed - ERROR: ",
                                       "MailRepository::loadMail() SQL ERROR: ",
                                       "MailRepository::resetMail() SQL ERROR: "}));
    const QString sql = " \n\nSQL: ";
    QCOMPARE(log->countContaining(sql + "INSERT INTO emails (type, `from`, `to`, subject, body, "),
             2);
    QCOMPARE(log->countContaining(sql + "SELECT * FROM emails WHERE mid =8"), 1);
    QCOMPARE(log->countContaining(sql + "UPDATE emails SET status = 'Q', done = NULL, apiID = NULL "
                                        "WHERE mid =9"),
             1);
    QCOMPARE(log->texts(QtDebugMsg).last(), QString("MailRepository::resetMail(mid: 9)"));
}

QTEST_GUILESS_MAIN(TestMailRepository)
#include "tst_mailrepository.moc"
