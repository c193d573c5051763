#include "host/workers.h"

#include <QSqlDatabase>

QStringList servedTokens()
{
    const auto worker = QLatin1String("AutoReport.worker.");
    const auto single = QLatin1String("AutoReport.single.");
    QStringList tokens;
    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        if (name.startsWith(worker))
            tokens.append(
                name.mid(worker.size(), name.lastIndexOf(QLatin1Char('.')) - worker.size()));
        else if (name.startsWith(single))
            tokens.append(QString());
    }
    return tokens;
}
