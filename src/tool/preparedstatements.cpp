#include "tool/preparedstatements.h"

#include <QCryptographicHash>

namespace
{

QByteArray keyOf(const QByteArray &digest, const QStringList &statements)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(digest);
    for (const QString &statement : statements)
        hash.addData(statement.toUtf8() + '\0');
    return hash.result();
}

} // namespace

bool PreparedStatements::contains(const QByteArray &digest, const QStringList &statements) const
{
    const QMutexLocker locker(&mutex);
    return !digest.isEmpty() && known.contains(keyOf(digest, statements));
}

void PreparedStatements::insert(const QByteArray &digest, const QStringList &statements)
{
    const QMutexLocker locker(&mutex);
    known.insert(keyOf(digest, statements));
}
