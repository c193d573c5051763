#include "support/connectionguard.h"

#include "support/logcapture.h"
#include "support/testserver.h"

#include <QTest>

void checkConnections(const LogCapture &log)
{
    for (const char *complaint :
         {"still in use", "addDatabase: duplicate connection name",
          "does not belong to the calling thread", "different thread", "another thread"}) {
        if (log.countContaining(QString::fromLatin1(complaint)) != 0)
            QTest::qFail(complaint, __FILE__, __LINE__);
    }

    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        if (!name.startsWith(TestServer::ownPrefix()))
            QTest::qFail(qPrintable(QStringLiteral("left registered: ") + name), __FILE__,
                         __LINE__);
    }
}
