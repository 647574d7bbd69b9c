// The requests that wait for the helper's engines.
#pragma once

#include "platform/voice/rendering/render_wire.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace tessavox::voice {

/// Between the thread that reads what is asked for and the one that speaks.
class OrderBox {
public:
    struct Order {
        std::uint64_t job = 0;
        WireRequest request;
        bool dropped = false;
    };
    void put(std::uint64_t job, WireRequest request);
    /// Everything up to `last_job` is no longer wanted, not even what is being spoken.
    void drop_up_to(std::uint64_t last_job);
    /// Waits for the next one.
    Order take();
    /// Whether the one taken last has been dropped since.
    const std::atomic<bool>& dropped() const { return m_dropped; }

private:
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::deque<Order> m_orders;
    std::uint64_t m_taken = 0; // its job
    std::atomic<bool> m_dropped{ false };
};

} // namespace tessavox::voice
