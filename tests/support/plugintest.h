#pragma once

#include "plugin/autoreport.h"
#include "support/testhost.h"

#include <QTemporaryDir>
#include <QThread>

/// Base of test classes of the plug-in that gives each test function its own plug-in, its host, and
/// a schema, which the host does not list yet.
class PluginTest : public QObject
{
    Q_OBJECT

protected:
    /// Runs after all members are set up.
    virtual void prepare() {}

    void setUp(bool withInfoDatabase);

    /// Starts a scan without waiting for its time.
    void beginScan() const;
    /// Scans to the end.
    void scan() const;
    /// Stops the plug-in, which must not take longer.
    void stopWithin(int limitMs) const;

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
    void cleanup();
};
