#include "db/mailrepository.h"
#include "db/zasdbsettings.h"

#include "support/reportbench.h"

/// The stores of a schema: its settings and its mail queue.
class TestSchemaStores : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void settings()
    {
        ZasDbSettings store;
        store.setDB(bench->database);
        QCOMPARE(store.variableGet(daily, 5), QVariant(5));
        for (const QVariant &value : {QVariant("it's 100 % Ľ"), QVariant(1700000000LL)}) {
            QVERIFY(store.variableSet(daily, value));
            QCOMPARE(store.variableGet(daily, 5).toString(), value.toString());
        }
        QVERIFY(store.variableSet(daily, QVariant(QVariant::String)));
        QVERIFY2(store.variableGet(daily, 5).isNull(), "a stored NULL is not a missing key");
        QCOMPARE(bench->schema.value("SELECT COUNT(*) FROM vars").toInt(), 1);

        QVERIFY(store.variableSetMultiple({{daily, 1}, {monthly, 0}, {"x", 2}}));
        QCOMPARE(store.variableGetMultiple(QStringList{daily, "missing", "x"}),
                 Values({{daily, "1"}, {"x", "2"}}));
        QCOMPARE(store.variableGetMultiple("autoReport.DailyAtten.").keys(), QStringList(daily));
        QCOMPARE(store.variableGetMultiple("auto_eport.").keys(), QStringList({daily, monthly}));
        QVERIFY(!store.variableDel("autoReport.", false));
        QVERIFY(store.variableDel("x", false));
        QVERIFY(store.variableDel("autoReport.", true));
        QVERIFY(!store.variableDel("autoReport.", true));
        QCOMPARE(bench->schema.value("SELECT COUNT(*) FROM vars").toInt(), 0);
        QVERIFY(store.variableSetMultiple(Values()));
        QCOMPARE(bench->log.texts(), QStringList());
    }

    void errorsAreLoggedOnce()
    {
        ZasDbSettings store(bench->database);
        QVERIFY(!store.variableSetMultiple({{"a", 1}, {QString(200, 'b'), 2}, {"c", 3}}));
        QCOMPARE(bench->schema.value("SELECT GROUP_CONCAT(name) FROM vars").toString(),
                 QString("a,c"));
        bench->schema.exec("DROP TABLE vars");
        QCOMPARE(store.variableGet(daily, 5), QVariant(5));
        QCOMPARE(store.variableGetMultiple("x"), Values());
        QVERIFY(!store.variableSet(daily, 1));
        QVERIFY(!store.variableDel(daily, false));
        QVERIFY(!ZasDbSettings().openDB());
        QStringList begins;
        for (const QString &line : bench->log.texts(QtCriticalMsg))
            begins += line.section(": ", 0, 0);
        QCOMPARE(begins, QStringList({"variableSet ERROR", "ZasDbSettings::variableGet - SQL ERROR",
                                      "ZasDbSettings::variableGetMultiple - SQL ERROR",
                                      "variableSet ERROR", "ZasDbSettings::variableDel - SQL ERROR",
                                      "ZasDbSettings Database Error"}));
    }

    void mailComesBackAsItWasQueued()
    {
        MailRepository repository(nullptr);
        repository.setDB(bench->database);
        MailRecord mail = someMail();
        mail.aid = 4000000000U;
        mail.uid = 7;
        mail.status = "X"; // never written
        uint mid = 0;
        // By name, as the host may call it.
        QVERIFY(QMetaObject::invokeMethod(&repository, "addMail", Q_RETURN_ARG(uint, mid),
                                          Q_ARG(MailRecord, mail)));
        const MailRecord read = repository.loadMail(mid);
        QVERIFY(mid > 0 && read.mid == mid);
        QCOMPARE(QStringList({read.type, read.status, read.from, read.to, read.subject, read.body}),
                 QStringList({QChar(69), "Q", mail.from, mail.to, mail.subject, mail.body}));
        QVERIFY(qAbs(QDateTime::currentSecsSinceEpoch() - read.created) < 60);
        QCOMPARE(QVector<uint>({read.sent, read.done, read.aid, read.uid}),
                 QVector<uint>({0, 0, mail.aid, mail.uid}));
        QCOMPARE(read.data, mail.data);
        QCOMPARE(repository.loadMail(mid + 1).mid, 0U);
        QCOMPARE(bench->log.texts(), QStringList());
    }

    void mailQueuedAgainOrNotAtAll()
    {
        MailRepository repository(nullptr);
        repository.setDB(bench->database);
        MailRecord mail = someMail();
        mail.to = "";
        QCOMPARE(repository.addMail(mail), 0U);
        QCOMPARE(bench->mails(), 0);

        mail = someMail();
        mail.type = QChar();
        const uint mid = repository.addMail(mail);
        QCOMPARE(repository.loadMail(mid).type, QChar());
        QCOMPARE(columns("type IS NULL, aid = 0, uid IS NULL, sent IS NULL, done IS NULL"),
                 QString("11111"));
        bench->schema.exec("UPDATE emails SET status = 'F', done = 5, sent = 4, apiID = 'a'");
        QVERIFY(repository.resetMail(mid));
        QCOMPARE(columns("status, sent, done IS NULL, apiID IS NULL"), QString("Q411"));
        QVERIFY(!repository.resetMail(mid + 1));
        QCOMPARE(bench->log.texts(), QStringList());
    }

private:
    using Values = QMap<QString, QVariant>;
    const QString daily = "autoReport.DailyAtten.enabled";
    const QString monthly = "autoReport.MonthlyAtten.enabled";

    static MailRecord someMail()
    {
        MailRecord mail;
        mail.from = "od@firma.sk";
        mail.to = "komu@firma.sk";
        mail.subject = "Denný report dochádzky";
        mail.body = "It's in the \"attachment\".\n\n\n:to ?";
        mail.data = QByteArray::fromHex("00ff27225c0a");
        return mail;
    }
    /// Returns these columns of the only mail, joined.
    QString columns(const QString &names) const
    {
        return bench->schema.value("SELECT CONCAT(" + names + ") FROM emails").toString();
    }
};

QTEST_GUILESS_MAIN(TestSchemaStores)
#include "tst_schemastores.moc"
