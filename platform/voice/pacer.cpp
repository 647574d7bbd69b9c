#include "platform/voice/pacer.h"

#include "platform/failure.h"

#include <algorithm>
#include <utility>

namespace tessavox::voice {

namespace {

using std::chrono::milliseconds;

// A device is let go a little after the last word, as the next stream may follow at once.
constexpr milliseconds sink_kept_open{ 400 };
constexpr milliseconds shortest_sleep{ 1 };
// While the position stands still: before the sound has started, or when the device hangs.
constexpr milliseconds sleep_without_progress{ 4 };
// A clock doesn't call when it has room again.
constexpr milliseconds room_poll{ 20 };

constexpr Wakeup::Clock::time_point no_deadline = Wakeup::Clock::time_point::max();

} // namespace

Pacer::Pacer(Playback& playback, EventQueue& events, SoundServer& server)
    : m_playback(playback)
    , m_events(events)
    , m_server(server)
{
}

void Pacer::run()
{
    for (;;) {
        const Playback::Orders orders = m_playback.orders();
        if (orders.stopping) {
            m_sink.reset();
            return;
        }
        if (orders.flush && m_sink)
            m_sink->flush();
        if (orders.job != m_job)
            begin(orders.job);
        m_playback.pacer().wait_until(m_job ? play(orders) : rest());
    }
}

void Pacer::begin(const std::shared_ptr<Job>& job)
{
    m_job = job;
    m_stream.reset();
    m_finished = false;
    m_heard = m_taken = m_owed = m_heard_last_look = 0;
    m_resting_since.reset();
    if (!job)
        return;
    m_stream.emplace(job, m_playback, m_events);
    const bool fits = m_sink && m_sink->alive() && !m_sink_is_clock
        && m_sink->format() == job->format && m_sink_output == job->output;
    if (!fits)
        m_sink.reset();
    else
        m_stream_to_sink = static_cast<std::int64_t>(m_sink->played());
}

Pacer::Time Pacer::rest()
{
    if (!m_sink)
        return no_deadline;
    const Time now = Wakeup::Clock::now();
    if (!m_resting_since)
        m_resting_since = now;
    if (now < *m_resting_since + sink_kept_open)
        return *m_resting_since + sink_kept_open;
    m_sink.reset();
    return no_deadline;
}

Pacer::Time Pacer::play(const Playback::Orders& orders)
{
    hold(orders.paused);
    if (orders.skip) {
        if (m_sink)
            m_sink->flush();
        m_taken = heard();
        m_owed = 0;
        m_finished = false;
        release();
        m_playback.dropped_unheard(*m_job, m_taken);
    }
    if (!orders.paused) {
        m_stream->start();
        feed();
    }
    if (m_stream->started() && release()) {
        m_stream->end(m_heard);
        return Wakeup::Clock::now(); // the next job may be there
    }
    return orders.paused ? no_deadline : next_look(m_due);
}

void Pacer::hold(bool paused)
{
    if (!m_sink || paused == m_sink_paused)
        return;
    m_sink_paused = paused;
    if (paused)
        m_sink->pause();
    else
        m_sink->resume();
}

void Pacer::open_sink()
{
    m_sink_paused = false;
    m_stream_to_sink = -static_cast<std::int64_t>(m_heard);
    m_sink_output = m_job->output;
    try {
        m_sink = m_server.open(
            m_job->format, m_job->output, [pacer = m_playback.shared_pacer()] { pacer->notify(); });
        m_sink_is_clock = false;
    } catch (const Failure&) {
        m_sink = make_clock_sink(m_job->format);
        m_sink_is_clock = true;
    }
}

// The words go on as if they were heard: what the device had taken with it is paid in silence.
void Pacer::replace_lost_sink()
{
    m_sink = make_clock_sink(m_job->format);
    m_sink_is_clock = true;
    m_sink_paused = false;
    m_stream_to_sink = -static_cast<std::int64_t>(m_heard);
    m_owed = m_taken - m_heard;
    m_finished = false;
}

void Pacer::feed()
{
    if (!m_sink)
        open_sink();
    if (!m_sink->alive())
        replace_lost_sink();
    const auto align = static_cast<std::size_t>(m_job->format.block_align());
    const std::byte silence{ static_cast<unsigned char>(m_job->format.bits == 8 ? 128 : 0) };
    for (;;) {
        const std::size_t room = m_sink->writable();
        m_buffer.clear();
        const auto owed = static_cast<std::size_t>(std::min<std::uint64_t>(room, m_owed));
        m_buffer.resize(owed * align, silence);
        m_owed -= owed;
        const bool last = m_playback.take_sound(*m_job, room - owed, m_buffer) && m_owed == 0;
        const std::size_t frames = m_buffer.size() / align;
        m_taken += frames - owed;
        m_stream->level(std::span(m_buffer).subspan(owed * align));
        if (frames > 0) {
            m_sink->write(m_buffer);
            m_finished = false;
        }
        if (last && !std::exchange(m_finished, true))
            m_sink->finish();
        if (frames == 0 || frames == room)
            return;
    }
}

std::uint64_t Pacer::heard()
{
    if (m_sink && m_sink->alive()) {
        const std::int64_t frame = static_cast<std::int64_t>(m_sink->played()) - m_stream_to_sink;
        const std::uint64_t counted = frame > 0 ? static_cast<std::uint64_t>(frame) : 0;
        m_heard = std::clamp(counted, m_heard, std::max(m_heard, m_taken));
    }
    return m_heard;
}

// Sends what is due. Returns whether the stream is over.
bool Pacer::release()
{
    m_due = m_playback.due(*m_job, heard());
    m_stream->tell(std::move(m_due.events));
    return m_due.ended;
}

Pacer::Time Pacer::next_look(const Playback::Due& due)
{
    const Time now = Wakeup::Clock::now();
    Time look = due.sound_waits ? now + room_poll : no_deadline;
    if (due.next) {
        const std::uint64_t frames = *due.next + 1 > m_heard ? *due.next + 1 - m_heard : 0;
        const std::chrono::duration<double> wait(
            static_cast<double>(frames) / static_cast<double>(m_job->format.rate));
        look = std::min(look, now + std::chrono::ceil<Wakeup::Clock::duration>(wait));
    }
    const bool stands = std::exchange(m_heard_last_look, m_heard) == m_heard;
    return std::max(look, now + (stands ? sleep_without_progress : shortest_sleep));
}

} // namespace tessavox::voice
