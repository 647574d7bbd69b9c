#include "platform/voice/rendering/helper_pool.h"

#include "platform/failure.h"

#include <poll.h>
#include <utility>

namespace tessavox::voice {

namespace {

constexpr std::size_t most_in_reserve = 2;
constexpr int first_starts = 2; // before the program goes on without a voice

// The voices that the helper greets with. @throws Failure if it doesn't in time.
std::vector<SpeechObjectToken> greeting_of(
    HelperProcess& helper, std::chrono::milliseconds patience)
{
    const auto bound = helper.waiting_since() + patience;
    for (;;) {
        helper.exchange();
        if (const auto greeting = helper.answer()) {
            auto voices = read_greeting(*greeting);
            helper.drop_answer();
            return voices;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            bound - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            throw Failure("a helper does not greet");
        pollfd readable{ helper.descriptor(), POLLIN, 0 };
        poll(&readable, 1, static_cast<int>(left.count()));
    }
}

} // namespace

std::vector<std::unique_ptr<HelperProcess>> HelperPool::Orders::collect()
{
    const std::lock_guard lock(m_mutex);
    arrived.clear();
    return std::exchange(m_helpers, {});
}

HelperPool::HelperPool(std::vector<std::string> command, HelperPatience patience)
    : m_command(std::move(command))
    , m_patience(patience)
    , m_thread([this] { run(); })
{
}

HelperPool::~HelperPool()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

std::vector<SpeechObjectToken> HelperPool::wait_for_voices()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_voices.has_value(); });
    return *m_voices;
}

void HelperPool::order(const std::shared_ptr<Orders>& orders)
{
    const std::lock_guard lock(m_mutex);
    if (m_reserve.empty()) {
        m_waiting.push_back(orders);
    } else {
        deliver(*orders, std::move(m_reserve.back()));
        m_reserve.pop_back();
    }
    m_changed.notify_all();
}

void HelperPool::end_reserve()
{
    const std::lock_guard lock(m_mutex);
    m_reserve.clear();
}

void HelperPool::give_back(std::unique_ptr<HelperProcess> helper)
{
    const std::lock_guard lock(m_mutex);
    if (m_reserve.size() < most_in_reserve)
        m_reserve.push_back(std::move(helper));
}

void HelperPool::deliver(Orders& orders, std::unique_ptr<HelperProcess> helper)
{
    const std::lock_guard lock(orders.m_mutex);
    orders.m_helpers.push_back(std::move(helper));
    orders.arrived.raise();
}

std::unique_ptr<HelperProcess> HelperPool::start_one() const
{
    std::unique_ptr<HelperProcess> helper;
    attempt([&] { helper = std::make_unique<HelperProcess>(m_command); });
    return helper;
}

void HelperPool::learn_voices()
{
    std::vector<SpeechObjectToken> voices;
    std::unique_ptr<HelperProcess> helper;
    bool greeted = false;
    for (int start = 0; start < first_starts && !greeted; ++start)
        if ((helper = start_one()))
            greeted = attempt([&] { voices = greeting_of(*helper, m_patience.slow.at_least); });
    const std::lock_guard lock(m_mutex);
    m_voices = std::move(voices);
    m_can_start = greeted;
    if (greeted)
        m_reserve.push_back(std::move(helper));
    m_changed.notify_all();
}

void HelperPool::run()
{
    learn_voices();
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] {
            return m_ending || !m_waiting.empty() || (m_reserve.empty() && m_can_start);
        });
        if (m_ending)
            return;
        lock.unlock();
        std::unique_ptr<HelperProcess> helper = start_one();
        lock.lock();
        m_can_start = helper != nullptr;
        if (!m_waiting.empty()) {
            deliver(*m_waiting.front(), std::move(helper));
            m_waiting.pop_front();
        } else if (helper) {
            m_reserve.push_back(std::move(helper));
        }
    }
}

} // namespace tessavox::voice
