#pragma once

#include "db/dbmanager.h"
#include "support/logcapture.h"
#include "support/testdata.h"
#include "support/testserver.h"

#include <memory>
#include <thread>
#include <vector>

/**
 * What the product's server is to the plug-in: an information database, its manager, and the
 * customers' databases that it lists.
 *
 * The destructor gives back the connections that the manager made for this thread.
 */
class TestHost
{
public:
    /// Without an information database, the plug-in is in single-database mode.
    explicit TestHost(bool withInfoDatabase = true);
    ~TestHost();
    Q_DISABLE_COPY(TestHost)

    DBManager *manager() { return &dbManager; }
    const TestDatabase &infoDatabase() const { return info; }

    /// Lists `database` in the information database under each of the tokens.
    void addSchemas(const QStringList &tokens, const TestDatabase &database);

private:
    TestDatabase info;
    DBManager dbManager;
    QStringList allTokens;
};

/// Enables the daily report of a schema, due at the first tick. Without recipients, none is made.
void enableDailyReport(const TestDatabase &schema, const QString &recipients = QString());

/// The same for both reports.
void enableBothReports(const TestDatabase &schema, const QString &recipients);

/// Resets the schema to a state in which no report was made and no mail queued.
void makeDue(const TestDatabase &schema);

/// Adds active people with the uids 1 to `count`.
void addPeople(const TestDatabase &schema, int count);

/// Returns whether the plug-in is in the middle of a scan.
bool isScanning(const QObject &plugin);
