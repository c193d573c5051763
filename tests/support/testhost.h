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
 * Gives back the connections that the manager made for this thread when it ends.
 */
class TestHost
{
public:
    /// Without an information database the manager never opens one: single-database mode.
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

/// Switches the daily report of a schema on, due with the first tick. No recipients: no report.
void enableDailyReport(const TestDatabase &schema, const QString &recipients = QString());

/// As if no report had been made yet, nor a mail been queued.
void makeDue(const TestDatabase &schema);

/// Adds active people with the uids 1 to `count`.
void addPeople(const TestDatabase &schema, int count);

/// Whether the plug-in has a scan to go on with.
bool isScanning(const QObject &plugin);

/// So many people that a daily report of today takes seconds, early in a month too, if its rows are
/// read one by one.
int peopleForSeconds();

/// Lets each row of a daily report be read for itself: people and days are told apart by whole
/// numbers when rows are read ahead.
void slowDown(const TestDatabase &schema);
