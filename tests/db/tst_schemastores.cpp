#include "db/mailrepository.h"
#include "db/zasdbsettings.h"
#include "support/reportbench.h"

namespace
{

const QString daily = "autoReport.DailyAtten.enabled";
const QString monthly = "autoReport.MonthlyAtten.enabled";
using Values = QMap<QString, QVariant>;

struct Stores : ReportBench {
    Stores()
    {
        settings.setDB(database);
        repository.setDB(database);
    }

    ZasDbSettings settings;
    MailRepository repository;
};

MailRecord someMail()
{
    MailRecord mail;
    mail.from = "od@firma.sk";
    mail.to = "komu@firma.sk";
    mail.subject = "Denný report dochádzky";
    mail.body = "It's in the \"attachment\".\n\n\n:to ?";
    mail.data = QByteArray::fromHex("00ff27225c0a");
    return mail;
}

} // namespace

/// The stores of a schema: its settings and its mail queue.
class TestSchemaStores : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingIsStoredAndReplaced()
    {
        Stores stores;
        ZasDbSettings &settings = stores.settings;
        QCOMPARE(settings.variableGet(daily, 5), QVariant(5));
        QVERIFY(settings.variableSet(daily, "it's 100 % Ľ"));
        QCOMPARE(settings.variableGet(daily, 5).toString(), QString("it's 100 % Ľ"));
        QVERIFY(settings.variableSet(daily, 1700000000LL));
        QCOMPARE(settings.variableGet(daily, 5).toLongLong(), 1700000000LL);
        QVERIFY(settings.variableSet(daily, QVariant(QVariant::String)));
        QVERIFY2(settings.variableGet(daily, 5).isNull(), "a stored NULL is not a missing key");
        QCOMPARE(stores.schema.value("SELECT COUNT(*) FROM vars").toInt(), 1);
        QCOMPARE(stores.log.texts(), QStringList());
    }

    void settingsByListAndPrefix()
    {
        Stores stores;
        ZasDbSettings &settings = stores.settings;
        QVERIFY(settings.variableSetMultiple({{daily, 1}, {monthly, 0}, {"x", 2}}));
        const QStringList asked{daily, "missing", "x"};
        QCOMPARE(settings.variableGetMultiple(asked), Values({{daily, "1"}, {"x", "2"}}));
        QCOMPARE(settings.variableGetMultiple("autoReport.DailyAtten.").keys(), QStringList(daily));
        QCOMPARE(settings.variableGetMultiple("auto_eport.").keys(), QStringList({daily, monthly}));

        QVERIFY(!settings.variableDel("autoReport.", false));
        QVERIFY(settings.variableDel("x", false));
        QVERIFY(settings.variableDel("autoReport.", true));
        QCOMPARE(stores.schema.value("SELECT COUNT(*) FROM vars").toInt(), 0);
        QVERIFY(!settings.variableDel("autoReport.", true));
        QVERIFY(settings.variableSetMultiple(Values()));
        QCOMPARE(stores.log.texts(), QStringList());
    }

    void oneBadSettingStopsNoOther()
    {
        Stores stores;
        QVERIFY(!stores.settings.variableSetMultiple({{"a", 1}, {QString(200, 'b'), 2}, {"c", 3}}));
        QCOMPARE(stores.schema.value("SELECT GROUP_CONCAT(name) FROM vars").toString(),
                 QString("a,c"));
        const QStringList faults = stores.log.texts(QtCriticalMsg);
        QVERIFY(faults.size() == 1 && faults[0].startsWith("variableSet ERROR: "));
    }

    void errorsAreLoggedOnce()
    {
        Stores stores;
        ZasDbSettings &settings = stores.settings;
        stores.schema.exec("DROP TABLE vars");
        QCOMPARE(settings.variableGet(daily, 5), QVariant(5));
        QCOMPARE(settings.variableGetMultiple("x"), Values());
        QVERIFY(!settings.variableSet(daily, 1));
        QVERIFY(!settings.variableDel(daily, false));
        QVERIFY(!ZasDbSettings().openDB());
        QStringList begins;
        for (const QString &line : stores.log.texts(QtCriticalMsg))
            begins += line.section(": ", 0, 0);
        QCOMPARE(begins, QStringList({"ZasDbSettings::variableGet - SQL ERROR",
                                      "ZasDbSettings::variableGetMultiple - SQL ERROR",
                                      "variableSet ERROR", "ZasDbSettings::variableDel - SQL ERROR",
                                      "ZasDbSettings Database Error"}));
    }

    void mailComesBackAsItWasQueued()
    {
        Stores stores;
        MailRecord mail = someMail();
        mail.aid = 4000000000U;
        mail.uid = 7;
        mail.status = "X"; // never written
        uint mid = 0;
        // By name, as the host may call it.
        QVERIFY(QMetaObject::invokeMethod(&stores.repository, "addMail", Q_RETURN_ARG(uint, mid),
                                          Q_ARG(MailRecord, mail)));
        const MailRecord read = stores.repository.loadMail(mid);
        QVERIFY(mid > 0 && read.mid == mid);
        QCOMPARE(QStringList({read.type, read.status, read.from, read.to, read.subject, read.body}),
                 QStringList({QChar(69), "Q", mail.from, mail.to, mail.subject, mail.body}));
        QVERIFY(qAbs(QDateTime::currentSecsSinceEpoch() - read.created) < 60);
        QCOMPARE(QVector<uint>({read.sent, read.done, read.aid, read.uid}),
                 QVector<uint>({0, 0, mail.aid, mail.uid}));
        QCOMPARE(read.data, mail.data);
        QCOMPARE(stores.repository.loadMail(mid + 1).mid, 0U);

        mail = someMail();
        mail.type = QChar();
        mid = stores.repository.addMail(mail);
        const QString sql = "SELECT CONCAT(type IS NULL, aid = 0, uid IS NULL, sent IS NULL, "
                            "done IS NULL) FROM emails WHERE mid = %1";
        QCOMPARE(stores.schema.value(sql.arg(mid)).toString(), QString("11111"));
        QCOMPARE(stores.repository.loadMail(mid).type, QChar());
        QCOMPARE(stores.log.texts(), QStringList());
    }

    void mailQueuedAgainOrNotAtAll()
    {
        Stores stores;
        MailRecord incomplete = someMail();
        incomplete.to.clear();
        QCOMPARE(stores.repository.addMail(incomplete), 0U);
        QCOMPARE(stores.mails(), 0);

        const uint mid = stores.repository.addMail(someMail());
        stores.schema.exec("UPDATE emails SET status = 'F', done = 5, sent = 4, apiID = 'a'");
        QVERIFY(stores.repository.resetMail(mid));
        const QString sql = "SELECT CONCAT(status, sent, done IS NULL, apiID IS NULL) FROM emails";
        QCOMPARE(stores.schema.value(sql).toString(), QString("Q411"));
        QVERIFY(!stores.repository.resetMail(mid + 1));
        QCOMPARE(stores.log.texts(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestSchemaStores)
#include "tst_schemastores.moc"
