// One reading's orders, on their way through helper processes.
#pragma once

#include "platform/voice/rendering/helper_pool.h"
#include "platform/voice/speech_engines.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace tessavox::voice {

/// A helper that crashes, hangs, runs out of memory or breaks the rules of the wire is ended and
/// replaced. What it had in hand is tried once more, then with the reference voice and without the
/// signs that engines stumble over, then it stays silent; what else it had is merely given to
/// another.
class HelperQueue : public RenderQueue {
public:
    HelperQueue(HelperPool& pool, std::shared_ptr<const VoiceCatalog> voices, int helpers);
    ~HelperQueue() override;

    bool wants_more() const override;
    void submit(int voice, int rate, Utterance utterance) override;
    bool pending() const override { return !m_jobs.empty(); }
    std::optional<Result> take(const std::function<bool()>& interrupted) override;
    void wake() override { m_woken.raise(); }
    void drop() override;

private:
    struct Job;

    Job* find(std::uint64_t number);
    WireRequest request_for(const Job& job) const;
    void settle_hopeless();
    void dispatch();
    HelperProcess* idlest();
    void order_helpers();
    void collect_helpers();
    void exchange();
    void serve(HelperProcess& helper);
    void part_from(const HelperProcess* lost);
    std::chrono::steady_clock::time_point deadline_of(const HelperProcess& helper);
    void wait();

    HelperPool& m_pool;
    const std::shared_ptr<const VoiceCatalog> m_voices;
    const std::size_t m_most_helpers;
    const std::shared_ptr<HelperPool::Orders> m_orders = std::make_shared<HelperPool::Orders>();
    std::size_t m_ordered = 0; // and not arrived
    std::vector<std::unique_ptr<HelperProcess>> m_helpers;
    std::deque<Job> m_jobs;
    WakeSignal m_woken;
};

} // namespace tessavox::voice
