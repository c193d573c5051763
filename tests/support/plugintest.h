#pragma once

#include "plugin/autoreport.h"
#include "support/testhost.h"

/// Base of test classes of the plug-in that gives each test function its own plug-in, its host, and
/// a schema, which the host does not list yet.
class PluginTest : public QObject
{
    Q_OBJECT

protected:
    /// Runs after all members are set up.
    virtual void prepare() {}

    void setUp(bool withInfoDatabase)
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

    /// Starts a scan without waiting for its time.
    void beginScan() const
    {
        QVERIFY(QMetaObject::invokeMethod(plugin.get(), "checkSchemas", Qt::DirectConnection));
    }
    /// Scans to the end.
    void scan() const
    {
        beginScan();
        QTRY_VERIFY_WITH_TIMEOUT(!isScanning(*plugin), patienceMs);
    }
    /// Stops the plug-in, which must not take longer.
    void stopWithin(int limitMs) const
    {
        QElapsedTimer clock;
        clock.start();
        plugin->stop();
        QVERIFY2(clock.elapsed() < limitMs, qPrintable(QString::number(clock.elapsed())));
    }

    /// Returns how many lines contain `part`.
    int logged(const QString &part) const { return log->countContaining(part); }
    /// Waits until so many do.
    bool logs(const QString &part, int times = 1) const { return log->gets(part, times); }
    int threads() const { return plugin->findChildren<QThread *>().size(); }

    std::unique_ptr<LogCapture> log;
    std::unique_ptr<QTemporaryDir> temporary; ///< workbooks go there
    std::unique_ptr<TestHost> host;
    std::unique_ptr<TestDatabase> schema;
    std::unique_ptr<AutoReport> plugin;

protected Q_SLOTS:
    void init() { setUp(true); }
    void cleanup()
    {
        plugin.reset();
        host.reset();
        schema.reset();
        log.reset();
        temporary.reset();
    }
};
