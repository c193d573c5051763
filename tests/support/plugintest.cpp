#include "support/plugintest.h"

#include <QElapsedTimer>

void PluginTest::setUp(bool withInfoDatabase)
{
    cleanup();
    temporary = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", temporary->path().toLocal8Bit());
    log = std::make_unique<LogCapture>();
    host = std::make_unique<TestHost>(withInfoDatabase);
    schema = std::make_unique<TestDatabase>(TestDatabase::Tables::Schema);
    plugin = std::make_unique<AutoReport>();
    plugin->setDBManager(host->manager());
    prepare();
}

void PluginTest::cleanup()
{
    plugin.reset();
    host.reset();
    schema.reset();
    log.reset();
    temporary.reset();
}

void PluginTest::beginScan() const
{
    QVERIFY(QMetaObject::invokeMethod(plugin.get(), "checkSchemas", Qt::DirectConnection));
}

void PluginTest::scan() const
{
    beginScan();
    QTRY_VERIFY_WITH_TIMEOUT(!isScanning(*plugin), patienceMs);
}

void PluginTest::stopWithin(int limitMs) const
{
    QElapsedTimer clock;
    clock.start();
    plugin->stop();
    QVERIFY2(clock.elapsed() < limitMs, qPrintable(QString::number(clock.elapsed())));
}
