#include "plugin/autoreport.h"

#include "db/dbmanager.h"
#include "plugin/buildstamp.h"
#include "plugin/serverwatch.h"
#include "worker/autoreportworker.h"
#include "worker/connectionguard.h"

#include <QTimer>

namespace
{

constexpr int scanIntervalMs = 3600000;
constexpr int soonMs = 1000;
// Shorter than the limits of workers, because the statements of a scan are short.
constexpr ServerWatch::Limits scanLimits{std::chrono::seconds(2), std::chrono::seconds(4)};

} // namespace

AutoReport::AutoReport(QObject *parent)
    : QObject(parent)
    , timer(new QTimer(this))
    , soonScan(new QTimer(this))
    , nextSlice(new QTimer(this))
{
    // The host finds the timers by these names to watch the scans.
    timer->setObjectName(QStringLiteral("scan"));
    soonScan->setObjectName(QStringLiteral("soonScan"));
    nextSlice->setObjectName(QStringLiteral("nextSlice"));
    soonScan->setSingleShot(true);
    connect(soonScan, &QTimer::timeout, this, &AutoReport::checkSchemas);
    nextSlice->setSingleShot(true);
    connect(nextSlice, &QTimer::timeout, this, &AutoReport::scanSlice);
}

AutoReport::~AutoReport()
{
    stopAllWorkers();
}

void AutoReport::stopAllWorkers()
{
    // Requested before stopAll(), so that a probe in progress ends while stopAll() waits.
    if (watch)
        watch->requestEnd();
    workers.stopAll();
    watch.reset();
}

QString AutoReport::getVersion() const
{
    return QStringLiteral("1.2.3");
}

QMap<QString, QString> AutoReport::getVerInfo() const
{
    QMap<QString, QString> info{{QStringLiteral("VER"), getVersion()},
                                {QStringLiteral("orvixType"), QStringLiteral("PLG.AR")},
                                {QStringLiteral("ZASDB"), QStringLiteral("20.03.17")}};
    const QString stamp = buildStamp(QStringLiteral(__DATE__), QStringLiteral(__TIME__));
    if (!stamp.isEmpty())
        info.insert(QStringLiteral("BUILD"), stamp);
    return info;
}

bool AutoReport::start()
{
    if (started) {
        qWarning("AutoReport - START ignored, this plugin instance is already started");
        return true;
    }
    qInfo("AutoReport - START");
    if (!dbManager) {
        qCritical("!!! AutoReport: Database manager not initialized !!!");
        return false;
    }
    interval = scanIntervalMs;
    infoDb = dbManager->isInfoDB();
    qInfo("AutoReport - is info db: %s", infoDb ? "YES" : "NO");
    started = true;
    watch = std::make_unique<ServerWatch>();
    return infoDb ? startScanning() : startSingleWorker();
}

bool AutoReport::startScanning()
{
    connect(timer, &QTimer::timeout, this, &AutoReport::handleTimer, Qt::UniqueConnection);
    timer->setInterval(interval);
    timer->start();
    infoGuard = std::make_shared<ConnectionGuard>();
    watch->add(makeDbConfig(dbManager->getInfoDB(), QString()), infoGuard, scanLimits);
    scanPending = true;
    soonScan->start(soonMs);
    return true;
}

bool AutoReport::startSingleWorker()
{
    const QString name = QStringLiteral("AutoReport.single.%1").arg(addressText());
    singleWorker = createWorker(makeDbConfig(database, name)).release(); // deletes itself
    connect(singleWorker, &AutoReportWorker::finished, singleWorker, &QObject::deleteLater);
    return singleWorker->start();
}

void AutoReport::holdScanning()
{
    timer->stop();
    soonScan->stop();
    nextSlice->stop();
}

void AutoReport::stop()
{
    qInfo("AutoReport - STOP");
    holdScanning();
    scanPending = false;
    stopAllWorkers();
    if (singleWorker) {
        singleWorker->stop();
        singleWorker = nullptr;
    }
    started = false;
}

void AutoReport::pause()
{
    qInfo("AutoReport - PAUSE");
    holdScanning();
    if (singleWorker)
        singleWorker->pause();
    workers.post("pause");
}

void AutoReport::resume()
{
    qInfo("AutoReport - RESUME");
    if (infoDb && started) {
        timer->start(interval);
        const bool heldBack = scanPending && !soonScan->isActive() && !nextSlice->isActive();
        if (heldBack)
            soonScan->start(soonMs);
    }
    if (singleWorker)
        singleWorker->resume();
    workers.post("resume");
}

/// Returns the object's address in base 16, to tell the connections of two plug-in objects apart.
QString AutoReport::addressText() const
{
    return QString::number(reinterpret_cast<quintptr>(this), 16);
}
