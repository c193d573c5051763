#include "tool/hosttext.h"

#include "tool/machine.h"
#include "tool/output.h"

#include <QDateTime>

#include <algorithm>

namespace
{

QString hostLine(const HostAnswer &host)
{
    const auto served = std::count_if(host.schemas.cbegin(), host.schemas.cend(),
                                      [](const SchemaAnswer &schema) { return schema.isServed; });
    QString line =
        QStringLiteral("host %1, version %2: %3serves %4 %5 since %6")
            .arg(QString::number(host.processId), host.version,
                 host.isPaused ? QStringLiteral("paused; ") : QString(), QString::number(served),
                 served == 1 ? QStringLiteral("schema") : QStringLiteral("schemas"),
                 momentText(host.since));
    if (!host.isSingle)
        line += QStringLiteral(", last scan %1, next %2")
                    .arg(momentText(host.lastScan), momentText(host.nextScan));
    return line + QStringLiteral(", zone %1").arg(host.zone);
}

} // namespace

QString momentText(qint64 seconds)
{
    return seconds == 0 ? QStringLiteral("-")
                        : Output::exactMoment(QDateTime::fromSecsSinceEpoch(seconds));
}

QStringList hostLines(const Machine &machine)
{
    QStringList lines;
    for (const HostAnswer &host : machine.hosts)
        lines.append(hostLine(host));
    if (lines.isEmpty())
        lines.append(QStringLiteral("no host of this database answers on this machine"));
    for (const QString &error : machine.silentHosts)
        lines.append(QStringLiteral("cannot ask a host: ") + error);
    return lines;
}

QJsonArray hostsJson(const Machine &machine)
{
    QJsonArray array;
    for (const HostAnswer &host : machine.hosts) {
        QJsonObject object = host.toJson();
        object.remove(QStringLiteral("schemas"));
        array.append(object);
    }
    return array;
}

QString runText(const RunOutcome &run)
{
    if (run.moment == 0)
        return QStringLiteral("none since the host started");
    if (run.cause.isEmpty())
        return QStringLiteral("%1, %2 %3 in %4 s")
            .arg(momentText(run.moment), QString::number(run.mails),
                 run.mails == 1 ? QStringLiteral("mail") : QStringLiteral("mails"),
                 QString::number(run.seconds, 'f', 1));
    return QStringLiteral("%1, failed: %2")
        .arg(momentText(run.moment), run.text.isEmpty() ? run.cause : run.text);
}
