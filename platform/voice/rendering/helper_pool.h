// Where the helper processes come from.
#pragma once

#include "platform/descriptor.h"
#include "platform/failure.h"
#include "platform/voice/rendering/helper_process.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <sys/eventfd.h>

namespace tessavox::voice {

/// Wakes a thread that waits for descriptors. Any thread may call it.
class WakeSignal {
public:
    /// @throws Failure if the process has no descriptor left.
    WakeSignal()
        : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        if (descriptor() < 0)
            throw Failure("no descriptor to be woken by");
    }

    /// Readable from raise() to clear(). Neither can fail in a way that matters: a counter that is
    /// full or empty is as wanted.
    int descriptor() const { return m_descriptor.get(); }
    void raise() { eventfd_write(descriptor(), 1); }
    void clear()
    {
        eventfd_t count = 0;
        eventfd_read(descriptor(), &count);
    }

private:
    Descriptor m_descriptor;
};

/// When a helper counts as hanging: after so long, and so much more for each code unit of what it
/// speaks, which is about a fifteenth of a second of sound.
struct HelperPatience {
    struct Time {
        std::chrono::milliseconds at_least;
        std::chrono::milliseconds per_unit;
    };
    /// The engines that everybody has make a sentence in milliseconds, and somebody is waiting.
    Time quick{ std::chrono::seconds(2), std::chrono::milliseconds(10) };
    /// Others may need longer than they speak. A start, too.
    Time slow{ std::chrono::seconds(10), std::chrono::milliseconds(200) };
};

/// Starts helpers on a thread of its own, because a helper ends with the thread that started it,
/// and keeps one warm in reserve. Any thread may call it.
class HelperPool {
public:
    /// Where an ordered helper arrives. The pool raises `arrived` for each.
    class Orders {
    public:
        /// What has arrived; nothing in place of a helper that can't be started.
        std::vector<std::unique_ptr<HelperProcess>> collect();
        WakeSignal arrived;

    private:
        friend class HelperPool;
        std::mutex m_mutex;
        std::vector<std::unique_ptr<HelperProcess>> m_helpers;
    };

    /// Begins to start one at once.
    HelperPool(std::vector<std::string> command, HelperPatience patience);
    ~HelperPool(); // after the last helper has gone

    /// Waits for the first greeting. No voices if no helper can be brought to greet.
    std::vector<SpeechObjectToken> wait_for_voices();
    const HelperPatience& patience() const { return m_patience; }
    /// Never waits. The one in reserve arrives at once.
    void order(const std::shared_ptr<Orders>& orders);
    /// Those in reserve may share what has made another one hang, such as a stop.
    void end_reserve();
    /// A number that no job of any queue has had, and higher than those.
    std::uint64_t next_job() { return ++m_last_job; }
    /// Takes one back that nobody needs any more. It may still owe answers to what was dropped.
    void give_back(std::unique_ptr<HelperProcess> helper);

private:
    void run();
    void learn_voices();
    std::unique_ptr<HelperProcess> start_one() const;
    static void deliver(Orders& orders, std::unique_ptr<HelperProcess> helper);

    const std::vector<std::string> m_command;
    const HelperPatience m_patience;
    std::atomic<std::uint64_t> m_last_job{ 0 };
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::optional<std::vector<SpeechObjectToken>> m_voices;
    std::vector<std::unique_ptr<HelperProcess>> m_reserve;
    std::deque<std::shared_ptr<Orders>> m_waiting;
    bool m_can_start = true;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace tessavox::voice
