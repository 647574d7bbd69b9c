// How one thread tells another that there is something to look at.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tessavox::voice {

/// A call that is remembered until it is answered. notify() takes no lock but its own, so a sound
/// server's thread may call it whatever it holds.
class Wakeup {
public:
    using Clock = std::chrono::steady_clock;

    void notify()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_called = true;
        }
        m_condition.notify_one();
    }

    /// Returns at the next call, at once if there was one since the last wait, or at `deadline`.
    /// Clock::time_point::max() waits for a call alone.
    void wait_until(Clock::time_point deadline)
    {
        std::unique_lock lock(m_mutex);
        const auto called = [this] { return m_called; };
        if (deadline == Clock::time_point::max())
            m_condition.wait(lock, called);
        else
            m_condition.wait_until(lock, deadline, called);
        m_called = false;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_called = false;
};

} // namespace tessavox::voice
