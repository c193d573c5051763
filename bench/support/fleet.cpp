#include "support/fleet.h"

#include "support/checkoutput.h"
#include "support/measure.h"

#include <QFile>

namespace
{

const QStringList copied{
    QStringLiteral("vars"),        QStringLiteral("groups"),     QStringLiteral("departs"),
    QStringLiteral("branches"),    QStringLiteral("people"),     QStringLiteral("brape"),
    QStringLiteral("atten"),       QStringLiteral("atten_data"), QStringLiteral("inters"),
    QStringLiteral("atten_month"), QStringLiteral("emails"),
};

const QString settings =
    QStringLiteral("INSERT INTO vars (name, value) VALUES ('autoReport.%1.enabled', '1'), "
                   "('autoReport.%1.emails', 'office@example.com'), "
                   "('autoReport.%1.time', '07:00')");

} // namespace

Fleet::Fleet(int customerCount, int peopleOfEach, int daysOfMonth)
    : count(customerCount)
    , people(peopleOfEach)
    , days(daysOfMonth)
    , info(TestDatabase::Tables::Info)
    , source(people, days)
{
    for (const QString &report : {QStringLiteral("DailyAtten"), QStringLiteral("MonthlyAtten")})
        source.tables().exec(settings.arg(report));
    for (int number = 1; number <= count; ++number)
        addCustomer(number);
}

Fleet::~Fleet()
{
    forEach(QStringLiteral("DROP DATABASE `%1`"));
}

void Fleet::addCustomer(int number) const
{
    const QString name = prefix() + QString::number(number);
    source.tables().exec(QStringLiteral("CREATE DATABASE `%1`").arg(name));
    for (const QString &table : copied) {
        source.tables().exec(QStringLiteral("CREATE TABLE `%1`.`%2` LIKE `%2`").arg(name, table));
        source.tables().exec(
            QStringLiteral("INSERT INTO `%1`.`%2` SELECT * FROM `%2`").arg(name, table));
    }
    source.tables().exec(QStringLiteral("UPDATE `%1`.people SET surname = CONCAT(surname, '#%2#')")
                             .arg(name)
                             .arg(number));
    info.addSchemas({QStringLiteral("customer%1").arg(number)}, name);
}

QString Fleet::moment() const
{
    return BenchSchema::moment(days).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

void Fleet::forEach(const QString &statement) const
{
    for (int number = 1; number <= count; ++number)
        source.tables().exec(statement.arg(prefix() + QString::number(number)));
}

void Fleet::reset() const
{
    forEach(QStringLiteral("TRUNCATE `%1`.emails"));
    forEach(QStringLiteral("DELETE FROM `%1`.vars WHERE name LIKE '%lastGenerated'"));
}

int Fleet::queuedMails() const
{
    QStringList each;
    for (int number = 1; number <= count; ++number)
        each.append(
            QStringLiteral("(SELECT COUNT(*) FROM `%1%2`.emails)").arg(prefix()).arg(number));
    return source.tables().value(QStringLiteral("SELECT ") + each.join(QLatin1Char('+'))).toInt();
}

void Fleet::check(const QString &folder) const
{
    for (int number = 1; number <= count; ++number) {
        const QString schema = prefix() + QString::number(number);
        const auto mails = source.tables().rows(
            QStringLiteral("SELECT subject, data FROM `%1`.emails ORDER BY subject").arg(schema));
        Bench::require(mails.size() == 2,
                       QStringLiteral("%1 has %2 mails").arg(schema).arg(mails.size()));
        for (const QVariantList &mail : mails) {
            const bool daily = mail[0].toString().startsWith(QStringLiteral("Den"));
            QFile file(folder + (daily ? QStringLiteral("/DennyReport_%1_112026.xlsx")
                                       : QStringLiteral("/MesReportDochadzky_%1_112026.xlsx"))
                                    .arg(schema));
            Bench::require(file.open(QIODevice::ReadOnly), file.fileName());
            Bench::require(mail[1].toByteArray().contains(file.readAll().toBase64()),
                           QStringLiteral("a mail of %1 does not carry the file").arg(schema));
        }
    }
    requireFleet(folder, prefix(), count, people, days);
}
