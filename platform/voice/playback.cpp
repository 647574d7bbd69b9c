#include "platform/voice/playback.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessavox::voice {

namespace {

// Long enough for no seam to click, short enough not to be heard as a gap.
std::size_t fade_frames(const PcmFormat& format)
{
    return static_cast<std::size_t>(format.rate) * 3 / 1000;
}

} // namespace

Playback::Playback(std::shared_ptr<Wakeup> caller)
    : m_caller(std::move(caller))
    , m_ring(PcmFormat(), 0)
{
}

void Playback::enqueue(std::shared_ptr<Job> job)
{
    const std::lock_guard lock(m_mutex);
    if (m_queue.empty() && !m_current)
        m_spoken_units = 0;
    m_queue.push_back(std::move(job));
    m_worker.notify_one();
}

void Playback::purge()
{
    {
        const std::lock_guard lock(m_mutex);
        m_queue.clear();
        m_skips.clear();
        if (!m_current)
            return;
        m_current->cancelled = true;
        m_flush = true;
        leave_current();
    }
    m_pacer->notify();
    m_caller->notify();
}

void Playback::leave_current()
{
    m_current.reset();
    m_complete = false;
    m_skips.clear();
    m_skip_from.reset();
    m_events.clear();
    m_ring.restart(0);
    order();
}

// The engines' queue asks for nothing that is locked here.
void Playback::order()
{
    ++m_order_version;
    m_worker.notify_one();
    if (m_awaited)
        m_awaited->wake();
}

void Playback::set_awaited(RenderQueue* engines)
{
    const std::lock_guard lock(m_mutex);
    m_awaited = engines;
}

void Playback::set_spoken_units(const Job& job, std::int64_t units)
{
    const std::lock_guard lock(m_mutex);
    if (is_current(job))
        m_spoken_units = units;
}

void Playback::set_paused(bool paused)
{
    {
        const std::lock_guard lock(m_mutex);
        m_paused = paused;
    }
    m_pacer->notify();
}

bool Playback::paused() const
{
    const std::lock_guard lock(m_mutex);
    return m_paused;
}

void Playback::set_rate(int rate)
{
    const std::lock_guard lock(m_mutex);
    if (m_rate.exchange(rate) == rate)
        return;
    order();
}

bool Playback::skip(int count)
{
    {
        const std::lock_guard lock(m_mutex);
        const Job* const job
            = m_current ? m_current.get() : (m_queue.empty() ? nullptr : m_queue.front().get());
        if (!job || job->wave || job->file)
            return false;
        m_skips.push_back(count);
    }
    m_pacer->notify();
    return true;
}

void Playback::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_queue.clear();
        if (m_current)
            m_current->cancelled = true;
        leave_current();
    }
    m_pacer->notify();
}

bool Playback::idle() const
{
    const std::lock_guard lock(m_mutex);
    return m_queue.empty() && !m_current;
}

bool Playback::holds(const Job& job) const
{
    const std::lock_guard lock(m_mutex);
    return is_current(job)
        || std::any_of(m_queue.begin(), m_queue.end(),
            [&](const std::shared_ptr<Job>& queued) { return queued.get() == &job; });
}

bool Playback::held_by_pause() const
{
    const std::lock_guard lock(m_mutex);
    return m_paused
        && ((m_current && !m_current->file)
            || std::any_of(m_queue.begin(), m_queue.end(),
                [](const std::shared_ptr<Job>& queued) { return !queued->file; }));
}

std::shared_ptr<Job> Playback::take_job()
{
    std::shared_ptr<Job> job;
    {
        std::unique_lock lock(m_mutex);
        m_worker.wait(lock, [this] { return m_stopping || (!m_queue.empty() && !m_current); });
        if (m_stopping)
            return nullptr;
        job = std::move(m_queue.front());
        m_queue.pop_front();
        m_current = job;
        m_spoken_units = 0;
        m_ring = SoundRing(job->format, static_cast<std::size_t>(job->format.rate));
    }
    if (!job->file)
        m_pacer->notify();
    return job;
}

bool Playback::ordered(const Job& job, int order_version) const
{
    return !is_current(job) || m_order_version != order_version;
}

bool Playback::append(const Job& job, int order_version, std::span<const std::byte> sound,
    std::vector<StreamEvent>& events)
{
    {
        std::unique_lock lock(m_mutex);
        m_worker.wait(lock, [&] { return ordered(job, order_version) || !m_ring.full(); });
        if (ordered(job, order_version))
            return false;
        m_ring.append(sound);
        for (StreamEvent& event : events) {
            const auto place = std::upper_bound(m_events.begin(), m_events.end(), event,
                [](const StreamEvent& a, const StreamEvent& b) { return a.frame < b.frame; });
            m_events.insert(place, std::move(event));
        }
    }
    events.clear();
    m_pacer->notify();
    return true;
}

void Playback::complete(const Job& job)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!is_current(job) || m_skip_from)
            return;
        m_complete = true;
    }
    m_pacer->notify();
}

void Playback::wait_for_order(const Job& job, int order_version)
{
    std::unique_lock lock(m_mutex);
    m_worker.wait(lock, [&] { return ordered(job, order_version); });
}

std::optional<Playback::Skip> Playback::take_skip(const Job& job)
{
    const std::lock_guard lock(m_mutex);
    if (!is_current(job) || !m_skip_from)
        return std::nullopt;
    Skip skip{ std::exchange(m_skips, {}), *m_skip_from };
    m_skip_from.reset();
    return skip;
}

std::uint64_t Playback::changeable_from(const Job& job) const
{
    const std::lock_guard lock(m_mutex);
    return m_ring.begin() + fade_frames(job.format);
}

bool Playback::cut(const Job& job, std::uint64_t frame, std::uint64_t sequence)
{
    const std::lock_guard lock(m_mutex);
    const std::size_t fade = fade_frames(job.format);
    if (!is_current(job) || m_skip_from || frame < m_ring.begin() + fade || frame > m_ring.end())
        return false;
    m_ring.truncate(frame, fade);
    std::erase_if(m_events, [&](const StreamEvent& event) {
        return event.frame >= frame && event.sequence >= sequence;
    });
    m_complete = false;
    return true;
}

void Playback::finish(const Job& job)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!is_current(job))
            return;
        leave_current();
    }
    m_caller->notify();
}

Playback::Orders Playback::orders()
{
    const std::lock_guard lock(m_mutex);
    Orders orders;
    orders.stopping = m_stopping;
    orders.flush = std::exchange(m_flush, false);
    orders.paused = m_paused;
    orders.skip = !m_skips.empty() && !m_skip_from;
    if (m_current && !m_current->file)
        orders.job = m_current;
    return orders;
}

void Playback::dropped_unheard(const Job& job, std::uint64_t heard)
{
    const std::lock_guard lock(m_mutex);
    if (!is_current(job))
        return;
    m_ring.restart(heard);
    std::erase_if(m_events, [&](const StreamEvent& event) { return event.frame >= heard; });
    m_complete = false;
    m_skip_from = heard;
    order();
}

bool Playback::take_sound(const Job& job, std::size_t count, std::vector<std::byte>& out)
{
    const std::lock_guard lock(m_mutex);
    if (!is_current(job))
        return false;
    m_ring.take(count, out);
    // A quarter free is enough to be worth waking the worker for.
    if (m_ring.frames() * 4 <= static_cast<std::size_t>(job.format.rate) * 3)
        m_worker.notify_one();
    return m_complete && m_ring.frames() == 0;
}

Playback::Due Playback::due(const Job& job, std::uint64_t heard)
{
    const std::lock_guard lock(m_mutex);
    Due due;
    if (!is_current(job))
        return due;
    due.ended = m_complete && m_skips.empty() && !m_paused && heard >= m_ring.end();
    const auto later = due.ended
        ? m_events.end()
        : std::find_if(m_events.begin(), m_events.end(),
            [&](const StreamEvent& event) { return event.frame >= heard; });
    std::move(m_events.begin(), later, std::back_inserter(due.events));
    m_events.erase(m_events.begin(), later);
    if (!m_events.empty())
        due.next = m_events.front().frame;
    due.sound_waits = m_ring.frames() > 0;
    if (m_complete && !due.next)
        due.next = m_ring.end();
    return due;
}

} // namespace tessavox::voice
