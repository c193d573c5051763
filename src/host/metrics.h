#pragma once

#include <QString>

#include <memory>

class HostState;
namespace prometheus
{
class Collectable;
class Exposer;
} // namespace prometheus

/**
 * Serves the host's state at http://ADDRESS/metrics in the format of Prometheus. Answers requests
 * in threads of its own. The state must outlive the object.
 */
class Metrics
{
public:
    explicit Metrics(const HostState &state);
    ~Metrics();
    Q_DISABLE_COPY(Metrics)

    /// Listens at `address`, such as "127.0.0.1:9469". Returns whether that succeeded.
    bool listen(const QString &address);

private:
    std::shared_ptr<prometheus::Collectable> source;
    std::unique_ptr<prometheus::Exposer> exposer;
};
