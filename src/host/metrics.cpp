#include "host/metrics.h"

#include "host/hoststate.h"
#include "host/logsink.h"
#include "host/workers.h"

#include <prometheus/client_metric.h>
#include <prometheus/collectable.h>
#include <prometheus/exposer.h>
#include <prometheus/metric_family.h>
#include <prometheus/metric_type.h>

#include <exception>
#include <fstream>
#include <limits>

#include <unistd.h>

using prometheus::ClientMetric;
using prometheus::MetricFamily;
using prometheus::MetricType;

namespace
{

using Labels = std::vector<ClientMetric::Label>;

/// Collects the samples of one metric.
class Family
{
public:
    Family(const char *name, const char *help, MetricType type)
    {
        family.name = name;
        family.help = help;
        family.type = type;
    }

    Family &add(double value, Labels labels = {})
    {
        ClientMetric &metric = append(std::move(labels));
        metric.counter.value = value; // the family's type decides which value is read
        metric.gauge.value = value;
        return *this;
    }

    Family &add(const Durations &durations, Labels labels = {})
    {
        ClientMetric::Histogram &histogram = append(std::move(labels)).histogram;
        histogram.sample_sum = durations.sumSeconds;
        for (size_t i = 0; i < durations.counts.size(); ++i) {
            histogram.sample_count += durations.counts[i];
            const double bound = i < Durations::boundsSeconds.size()
                                     ? Durations::boundsSeconds[i]
                                     : std::numeric_limits<double>::infinity();
            histogram.bucket.push_back({histogram.sample_count, bound});
        }
        return *this;
    }

    MetricFamily family;

private:
    ClientMetric &append(Labels labels)
    {
        ClientMetric metric;
        metric.label = std::move(labels);
        family.metric.push_back(std::move(metric));
        return family.metric.back();
    }
};

Labels kindLabel(const QString &kind)
{
    return {{"kind", kind.toStdString()}};
}

void addRuns(std::vector<MetricFamily> &families, const QMap<QString, RunTotals> &runs)
{
    Family made("autoreport_reports_made_total", "Reports made and queued as mail.",
                MetricType::Counter);
    Family failed("autoreport_reports_failed_total", "Runs of reports that queued no mail.",
                  MetricType::Counter);
    Family mails("autoreport_mails_queued_total", "Mails queued by reports.", MetricType::Counter);
    Family seconds("autoreport_report_duration_seconds", "Duration of the runs of reports.",
                   MetricType::Histogram);
    for (auto run = runs.begin(); run != runs.end(); ++run) {
        made.add(double(run->made), kindLabel(run.key()));
        mails.add(double(run->mails), kindLabel(run.key()));
        seconds.add(run->durations, kindLabel(run.key()));
        for (auto cause = run->failed.begin(); cause != run->failed.end(); ++cause)
            failed.add(double(*cause),
                       {{"kind", run.key().toStdString()}, {"cause", cause.key().toStdString()}});
    }
    for (const Family &family : {made, failed, mails, seconds})
        families.push_back(family.family);
}

void addSchemas(std::vector<MetricFamily> &families, const QMap<QString, SchemaState> &schemas)
{
    Family success("autoreport_last_success_timestamp_seconds",
                   "When a schema's report was last made, since the host started.",
                   MetricType::Gauge);
    Family waiting("autoreport_mails_waiting", "Mails of a schema that are waiting to be sent.",
                   MetricType::Gauge);
    Family oldest("autoreport_oldest_mail_timestamp_seconds",
                  "When the oldest mail still waiting to be sent was queued.", MetricType::Gauge);
    for (auto schema = schemas.begin(); schema != schemas.end(); ++schema) {
        const std::string token = schema.key().toStdString();
        for (auto kind = schema->lastSuccess.begin(); kind != schema->lastSuccess.end(); ++kind)
            success.add(double(*kind), {{"schema", token}, {"kind", kind.key().toStdString()}});
        if (schema->isQueueKnown)
            waiting.add(schema->mailsWaiting, {{"schema", token}});
        if (schema->mailsWaiting > 0)
            oldest.add(double(schema->oldestMail), {{"schema", token}});
    }
    for (const Family &family : {success, waiting, oldest})
        families.push_back(family.family);
}

/// Returns the size of the process in memory. The second number in /proc/self/statm is this size in
/// pages.
double residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    long size = 0;
    long resident = 0;
    statm >> size >> resident;
    return double(resident) * double(sysconf(_SC_PAGESIZE));
}

class Source : public prometheus::Collectable
{
public:
    explicit Source(const HostState &hostState)
        : state(hostState)
    {
    }

    std::vector<MetricFamily> Collect() const override
    {
        const HostSnapshot snapshot = state.snapshot();
        std::vector<MetricFamily> families;
        addRuns(families, snapshot.runs);
        addSchemas(families, snapshot.schemas);
        const auto gauge = [&families](const char *name, const char *help, double value) {
            families.push_back(Family(name, help, MetricType::Gauge).add(value).family);
        };
        gauge("autoreport_workers", "Schemas that have a worker.", servedTokens().size());
        gauge("autoreport_recent_problems",
              "Different warnings and errors logged within the last hour.",
              LogSink::recentProblems());
        gauge("autoreport_last_scan_timestamp_seconds", "When the last scan of the schemas ended.",
              double(snapshot.lastScan));
        gauge("process_resident_memory_bytes", "Resident memory size.", residentBytes());
        families.push_back(Family("autoreport_scan_duration_seconds",
                                  "Duration of the scans of the schemas.", MetricType::Histogram)
                               .add(snapshot.scans)
                               .family);
        return families;
    }

private:
    const HostState &state;
};

} // namespace

Metrics::Metrics(const HostState &hostState)
    : source(std::make_shared<Source>(hostState))
{
}

Metrics::~Metrics() = default;

bool Metrics::listen(const QString &address)
{
    try {
        exposer = std::make_unique<prometheus::Exposer>(address.toStdString(), 1);
    } catch (const std::exception &) { // its text does not name the address
        return false;
    }
    exposer->RegisterCollectable(source);
    return true;
}
