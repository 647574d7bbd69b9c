#include "platform/voice/helper/order_box.h"

#include <utility>

namespace tessavox::voice {

void OrderBox::put(std::uint64_t job, WireRequest request)
{
    const std::lock_guard lock(m_mutex);
    m_orders.push_back({ job, std::move(request) });
    m_changed.notify_one();
}

void OrderBox::drop_up_to(std::uint64_t last_job)
{
    const std::lock_guard lock(m_mutex);
    for (Order& order : m_orders)
        order.dropped = order.dropped || order.job <= last_job;
    if (m_taken <= last_job)
        m_dropped = true;
}

OrderBox::Order OrderBox::take()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_orders.empty(); });
    Order order = std::move(m_orders.front());
    m_orders.pop_front();
    m_taken = order.job;
    m_dropped = order.dropped;
    return order;
}

} // namespace tessavox::voice
