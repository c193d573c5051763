#include "support/peerreport.h"

#include <QProcess>

namespace
{

QString port()
{
    return QString::number(TestServer::port());
}

QString date(int days)
{
    return BenchSchema::moment(days).date().toString(Qt::ISODate);
}

} // namespace

QStringList PeerReport::one(const QString &schema, int days, const QString &folder)
{
    return {QStringLiteral("one"), port(), schema, date(days), folder};
}

QStringList PeerReport::fleet(const QString &prefix, int count, int days, const QString &folder)
{
    return {QStringLiteral("fleet"), port(), prefix, QString::number(count), date(days), folder};
}

int PeerReport::run(const QStringList &arguments)
{
    return QProcess::execute(QStringLiteral(AUTOREPORT_PEER_REPORT), arguments);
}
