#include "tool/schemapool.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace
{

constexpr int maxThreads = 8; // the hosts need the server's connections more urgently

/// Distributes the rows to threads and collects their judgements.
class Pool
{
public:
    Pool(const QVector<SchemaRow> &schemaRows, const SchemaJudge &schemaJudge)
        : rows(schemaRows)
        , judge(schemaJudge)
        , judgements(size_t(rows.size()))
    {
        const int wanted = std::min(maxThreads, rows.size());
        try {
            for (int i = 0; i < wanted; ++i)
                threads.emplace_back([this] { work(); });
        } catch (const std::system_error &) { // fewer threads are enough
        }
        if (threads.empty())
            work();
    }
    ~Pool()
    {
        for (std::thread &thread : threads)
            thread.join();
    }
    Q_DISABLE_COPY(Pool)

    /// Waits for the next judgement and returns it. Returns null if there are no more.
    const SchemaJudgement *next()
    {
        std::unique_lock guard(mutex);
        changed.wait(guard, [this] { return taken < arrived.size() || isAtEnd(); });
        return taken < arrived.size() ? &*judgements[arrived[taken++]] : nullptr;
    }

    /// Makes each thread end after its current schema.
    void stop() { isStopped = true; }

    QVector<SchemaJudgement> takeAll()
    {
        QVector<SchemaJudgement> all;
        for (std::optional<SchemaJudgement> &judgement : judgements) {
            if (judgement)
                all.append(std::move(*judgement));
        }
        return all;
    }

private:
    void work()
    {
        for (int i = nextRow++; i < rows.size() && !isStopped; i = nextRow++) {
            SchemaJudgement judgement = judge.judge(rows.at(i));
            const std::lock_guard guard(mutex);
            judgements[size_t(i)] = std::move(judgement);
            arrived.push_back(size_t(i));
            changed.notify_one();
        }
        const std::lock_guard guard(mutex);
        ++ended;
        changed.notify_one();
    }

    bool isAtEnd() const { return ended >= std::max<size_t>(threads.size(), 1); }

    const QVector<SchemaRow> &rows;
    const SchemaJudge &judge;
    std::atomic<int> nextRow{0};
    std::atomic<bool> isStopped{false};
    std::mutex mutex; // guards the members below, except `threads`
    std::condition_variable changed;
    std::vector<std::optional<SchemaJudgement>> judgements; // by row
    std::vector<size_t> arrived;                            // indexes into `judgements`
    size_t taken = 0;
    size_t ended = 0;
    std::vector<std::thread> threads;
};

} // namespace

SchemasJudged judgeAll(const Schemas &schemas, const QVector<SchemaRow> &rows,
                       const SchemaJudge &judge, const std::function<void()> &progress)
{
    SchemasJudged judged;
    Pool pool(rows, judge);
    while (const SchemaJudgement *one = pool.next()) {
        progress();
        const bool isDoubtful = one->isTried && (!one->isOpened || !one->isComplete);
        if (judged.isComplete && isDoubtful && !schemas.isAnswering()) {
            judged.isComplete = false;
            pool.stop();
        }
    }
    judged.list = pool.takeAll();
    return judged;
}
