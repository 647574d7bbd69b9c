#include "tests/platform/voice/core/local_engines.h"

#include "platform/failure.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace tessavox::voice {

namespace {

constexpr std::size_t most_orders = 24;

struct Order {
    int voice = 0;
    int rate = 0;
    RenderQueue::Result result;
    bool started = false;
    bool done = false;
    std::atomic<bool> dropped{ false };
};

class LocalQueue : public RenderQueue {
public:
    explicit LocalQueue(std::shared_ptr<const VoiceCatalog> catalog)
        : m_catalog(std::move(catalog))
        , m_thread([this] { run(); })
    {
    }
    ~LocalQueue() override
    {
        drop();
        {
            const std::lock_guard lock(m_mutex);
            m_ending = true;
        }
        m_changed.notify_all();
        m_thread.join();
    }
    bool wants_more() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_orders.size() < most_orders;
    }
    void submit(int voice, int rate, Utterance utterance) override
    {
        auto order = std::make_shared<Order>();
        order->voice = voice;
        order->rate = rate;
        order->result.utterance = std::move(utterance);
        const std::lock_guard lock(m_mutex);
        m_orders.push_back(std::move(order));
        m_changed.notify_all();
    }
    bool pending() const override
    {
        const std::lock_guard lock(m_mutex);
        return !m_orders.empty();
    }
    std::optional<Result> take(const std::function<bool()>& interrupted) override
    {
        for (;;) {
            if (interrupted())
                return std::nullopt;
            std::unique_lock lock(m_mutex);
            if (m_orders.empty())
                return std::nullopt;
            m_changed.wait(lock, [this] { return m_woken || m_orders.front()->done; });
            if (!std::exchange(m_woken, false)) {
                Result result = std::move(m_orders.front()->result);
                m_orders.pop_front();
                return result;
            }
        }
    }
    void wake() override
    {
        const std::lock_guard lock(m_mutex);
        m_woken = true;
        m_changed.notify_all();
    }
    void drop() override
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& order : m_orders)
            order->dropped = true;
        m_orders.clear();
    }

private:
    void run()
    {
        while (const std::shared_ptr<Order> order = next()) {
            Result& result = order->result;
            Rendering rendering;
            attempt([&] {
                rendering = m_catalog->render(
                    order->voice, order->rate, result.utterance, order->dropped);
            });
            const std::lock_guard lock(m_mutex);
            result.rendering = std::move(rendering);
            order->done = true;
            m_changed.notify_all();
        }
    }
    std::shared_ptr<Order> next()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            for (const auto& order : m_orders)
                if (!std::exchange(order->started, true))
                    return order;
            if (m_ending)
                return nullptr;
            m_changed.wait(lock);
        }
    }

    const std::shared_ptr<const VoiceCatalog> m_catalog;
    mutable std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::deque<std::shared_ptr<Order>> m_orders;
    bool m_woken = false;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace

std::unique_ptr<RenderQueue> LocalEngines::live_queue()
{
    return std::make_unique<LocalQueue>(m_catalog);
}

std::unique_ptr<RenderQueue> LocalEngines::file_queue(std::size_t)
{
    return live_queue();
}

} // namespace tessavox::voice
